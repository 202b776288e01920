// Nothing in a folder tells of a view, a raw copy or an access control list that was there once.
// What the export has recorded when it had ended does.
#include <unordered_map>

#include "base/OutputPaths.h"
#include "console/account/Evidence.h"

namespace larkspan::console {

namespace {

bool IsRecorded(FileKind kind) {
  return kind == FileKind::kView || kind == FileKind::kRawCopy || kind == FileKind::kAcl ||
         kind == FileKind::kProperties;
}

using Sizes = std::unordered_map<std::string, std::uint64_t>;

class PresenceJudge {
 public:
  PresenceJudge(const Evidence& evidence, Verdicts& verdicts)
      : evidence_(evidence), verdicts_(verdicts) {}

  void Judge() {
    if (const Account* const recorded = evidence_.Recorded()) CompareWith(*recorded);
    JudgeAcl();
    JudgeProperties();
  }

 private:
  bool WasRecorded(const std::string& name) const { return recorded_.contains(name); }

  void CompareWith(const Account& account) {
    for (const FileRecord& record : account.records) recorded_.emplace(record.name, record.size);
    Sizes missing = recorded_;
    for (const ExportFile& file : evidence_.files.files) {
      if (!IsRecorded(file.kind)) continue;
      CompareFile(file);
      missing.erase(file.Name());
    }
    for (const auto& [name, size] : missing)
      Find("missing", name, "is missing; the export had written it");
  }

  void CompareFile(const ExportFile& file) {
    const std::string name = file.Name();
    const auto record = recorded_.find(name);
    if (record == recorded_.end()) {
      Find("unknown-file", name, "was not there when the export ended");
    } else if (record->second != file.size) {
      Find("changed", name,
           "has " + std::to_string(file.size) + " bytes instead of the " +
               std::to_string(record->second) + " that the export had written");
    }
  }

  void JudgeAcl() {
    const ExportFile* const acl = evidence_.files.Find(FileKind::kAcl, 0);
    const std::string name = ExportFile{FileKind::kAcl, 0, 0, {}}.Name();
    const std::optional<std::string>& cause = evidence_.log.aclCause;
    if (acl == nullptr && cause)
      verdicts_.AddLoss(LossKind::kAcl, std::nullopt, "acl", *cause);
    else if (acl == nullptr && !WasRecorded(name))
      Find("missing", name, "is missing, and log.txt does not tell why");
    else if (acl != nullptr && cause && !WasRecorded(name))
      Find("contradiction", name, "is there, but log.txt says that it could not be exported");
  }

  void JudgeProperties() {
    const std::string name = ExportFile{FileKind::kProperties, 0, 0, {}}.Name();
    if (evidence_.files.Find(FileKind::kProperties, 0) == nullptr && !WasRecorded(name))
      Find("missing", name, "is missing");
  }

  void Find(const char* kind, const std::string& name, const std::string& what) {
    verdicts_.AddFinding(kind, std::nullopt, name, name + " " + what);
  }

  const Evidence& evidence_;
  Verdicts& verdicts_;
  Sizes recorded_;
};

}  // namespace

void JudgePresence(const Evidence& evidence, Verdicts& verdicts) {
  PresenceJudge(evidence, verdicts).Judge();
}

}  // namespace larkspan::console
