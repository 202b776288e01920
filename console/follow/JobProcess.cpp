#include "console/follow/JobProcess.h"

#include <array>
#include <memory>
#include <utility>

#include "base/Wipe.h"

namespace larkspan::console {

namespace {

constexpr wchar_t kPasswordVariable[] = L"LARKSPAN_PASSWORD";

SystemHandle MakeJob() {
  SystemHandle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

// The environment is this program's own for the moment in which the exporter gets its copy.
class PasswordInEnvironment {
 public:
  explicit PasswordInEnvironment(const std::wstring& password) {
    SetEnvironmentVariableW(kPasswordVariable, password.empty() ? nullptr : password.c_str());
  }
  ~PasswordInEnvironment() { SetEnvironmentVariableW(kPasswordVariable, nullptr); }
  PasswordInEnvironment(const PasswordInEnvironment&) = delete;
  PasswordInEnvironment& operator=(const PasswordInEnvironment&) = delete;
};

// What a new process inherits: these handles and, whatever else is inheritable here, no other.
class InheritedHandles {
 public:
  explicit InheritedHandles(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    space_ = std::make_unique<std::byte[]>(size);
    initialised_ = InitializeProcThreadAttributeList(list(), 1, 0, &size);
    if (!initialised_) return;
    UpdateProcThreadAttribute(list(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                              handles_.size() * sizeof(HANDLE), nullptr, nullptr);
  }
  ~InheritedHandles() {
    if (initialised_) DeleteProcThreadAttributeList(list());
  }
  InheritedHandles(const InheritedHandles&) = delete;
  InheritedHandles& operator=(const InheritedHandles&) = delete;

  LPPROC_THREAD_ATTRIBUTE_LIST list() const {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(space_.get());
  }

 private:
  std::vector<HANDLE> handles_;
  std::unique_ptr<std::byte[]> space_;
  bool initialised_ = false;
};

}  // namespace

std::wstring OwnPath() {
  std::array<wchar_t, 32768> path{};
  const auto capacity = static_cast<DWORD>(path.size());
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), capacity);
  return length < capacity ? std::wstring(path.data(), length) : std::wstring();
}

std::wstring ExporterPath() {
  const std::wstring own = OwnPath();
  if (own.empty()) return {};
  return own.substr(0, own.find_last_of(L"\\/") + 1) + L"larkspan.exe";
}

ExportProcesses::ExportProcesses(std::wstring password, StopBy stopBy)
    : job_(MakeJob()),
      output_(MakePipe(InheritedEnd::kWrite)),
      stop_(MakePipe(InheritedEnd::kRead)),
      password_(std::move(password)),
      stopBy_(stopBy) {}

ExportProcesses::~ExportProcesses() { Wipe(password_); }

std::wstring ExportProcesses::StopPipeText() const {
  return std::to_wstring(reinterpret_cast<INT_PTR>(stop_.readEnd.get()));
}

StartedProcess ExportProcesses::Start(const std::wstring& program, std::wstring commandLine) const {
  const PasswordInEnvironment environment(password_);
  const InheritedHandles inherited({output_.writeEnd.get(), stop_.readEnd.get()});
  STARTUPINFOEXW startup{};
  startup.StartupInfo.cb = sizeof startup;
  startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  startup.StartupInfo.hStdOutput = output_.writeEnd.get();
  if (stopBy_ == StopBy::kEndOfInput) {
    startup.StartupInfo.hStdInput = stop_.readEnd.get();
    startup.StartupInfo.hStdError = output_.writeEnd.get();
  }
  startup.lpAttributeList = inherited.list();
  PROCESS_INFORMATION created{};
  // In a group of its own, since a Ctrl+C is for this program, which passes it on as a stop.
  constexpr DWORD kFlags =
      CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT | CREATE_NEW_PROCESS_GROUP;
  if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, kFlags, nullptr,
                      nullptr, &startup.StartupInfo, &created)) {
    return {{}, 0, GetLastError()};
  }
  // Before it can start a worker. In a job of somebody else's it may be refused; the exporter then
  // outlives this program if that is ended by force.
  AssignProcessToJobObject(job_.get(), created.hProcess);
  ResumeThread(created.hThread);
  CloseHandle(created.hThread);
  return {SystemHandle(created.hProcess), created.dwProcessId, 0};
}

}  // namespace larkspan::console
