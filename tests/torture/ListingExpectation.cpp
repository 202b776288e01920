#include "tests/support/LogMessages.h"
#include "tests/torture/Expectation.h"

namespace larkspan::torture {

namespace {

constexpr std::string_view kNoIdSwitch = "Unable to switch id (";
constexpr std::string_view kNoDirectory = "Error opening root directory (";
constexpr std::string_view kNoServers = "Unable to read servers (";

using enum Tells;

const std::vector<Expectation>& Table() {
  static const std::vector<Expectation> table = {
      {"NotesInitExtended", kAlways, {message::kNoRuntime}},
      {"NotesTerm", kNever, {}},
      {"SECKFMSwitchToIDFile", kAlways, {kNoIdSwitch}},
      {"OSTranslate", kSometimes, {kNoIdSwitch, kNoDirectory}, kUntold | kNamesEmpty},
      {"NSFDbOpen", kAlways, {kNoDirectory}},
      {"NSFDbPathGet", kNever, {}, kAsked},
      {"NSFSearch", kNever, {}, kEndsEarly},
      {"NSFDbClose", kNever, {}, kNothing, {"database"}},
      {"NSFLocateSummaryValue", kNever, {}, kUntold},
      {"NSFDbInfoParse", kNever, {}, kUntold},
      {"TimeExtractJulianDate", kNever, {}, kOtherTime},
      {"TimeExtractTicks", kNever, {}, kOtherTime},
      {"OSGetEnvironmentString", kAlways, {kNoServers}},
      {"DNAbbreviate", kAlways, {kNoServers}},
      {"NAMELookup", kAlways, {kNoServers}},
      {"OSLockObject", kAlways, {kNoServers}},
      {"OSUnlockObject", kNever, {}, kNothing, {"lock", "memory"}},
      {"OSMemFree", kNever, {}, kNothing, {"memory"}},
      {"NAMELocateNextName", kNever, {}},
      {"NAMELocateNextMatch", kNever, {}},
      {"NAMEGetTextItem", kNever, {}},
  };
  return table;
}

}  // namespace

const Expectation& ListingExpectationOf(const std::string& entry) {
  return FindExpectation(Table(), entry);
}

}  // namespace larkspan::torture
