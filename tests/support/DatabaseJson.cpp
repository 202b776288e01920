#include "tests/support/DatabaseJson.h"

#include <cstdint>

#include "tests/support/RunTexts.h"

namespace larkspan::testing {

std::string DocumentsJson(int count, const std::string& members) {
  std::string notes;
  for (int i = 0; i < count; ++i) {
    if (i > 0) notes += ",";
    notes += R"({"id": ")" + NoteIdText(0x902 + 4 * static_cast<std::uint32_t>(i)) +
             R"(", "items": [{"name": "Form", "text": "Note"}, )"
             R"({"name": "Subject", "text": "Note )" +
             std::to_string(i + 1) + R"("}, {"name": "Body", "richText": ["Some text."]}]})";
  }
  return "{" + members + R"("sizeKilobytes": 64, "notes": [)" + notes + "]}";
}

std::string FaultsMember(const std::string& faults) { return R"("faults": [)" + faults + "], "; }

}  // namespace larkspan::testing
