#include "console/follow/JobProcess.h"

#include <array>
#include <memory>
#include <mutex>
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

// The environment is this program's own for the moment in which the exporter gets its copy, and
// that of one thread.
class PasswordInEnvironment {
 public:
  explicit PasswordInEnvironment(const std::wstring& password) : lock_(mutex_) {
    SetEnvironmentVariableW(kPasswordVariable, password.empty() ? nullptr : password.c_str());
  }
  ~PasswordInEnvironment() { SetEnvironmentVariableW(kPasswordVariable, nullptr); }
  PasswordInEnvironment(const PasswordInEnvironment&) = delete;
  PasswordInEnvironment& operator=(const PasswordInEnvironment&) = delete;

 private:
  static inline std::mutex mutex_;
  const std::lock_guard<std::mutex> lock_;
};

// What a new process inherits, these handles and, whatever else is inheritable here, no other; and
// the job in which it begins, so that there is no moment at which it would outlive this program.
class ProcessAttributes {
 public:
  ProcessAttributes(std::vector<HANDLE> handles, HANDLE job)
      : handles_(std::move(handles)), job_(job) {
    constexpr DWORD kCount = 2;
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, kCount, 0, &size);
    space_ = std::make_unique<std::byte[]>(size);
    initialised_ = InitializeProcThreadAttributeList(list(), kCount, 0, &size);
    if (!initialised_) return;
    UpdateProcThreadAttribute(list(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                              handles_.size() * sizeof(HANDLE), nullptr, nullptr);
    // Mingw's older headers do not have its name, and Windows before 10 does not know it.
    constexpr DWORD_PTR kJobList = 0x0002000D;
    beginsInJob_ = job_ != nullptr && UpdateProcThreadAttribute(list(), 0, kJobList, &job_,
                                                                sizeof job_, nullptr, nullptr);
  }
  ~ProcessAttributes() {
    if (initialised_) DeleteProcThreadAttributeList(list());
  }
  ProcessAttributes(const ProcessAttributes&) = delete;
  ProcessAttributes& operator=(const ProcessAttributes&) = delete;

  bool BeginsInJob() const { return beginsInJob_; }

  LPPROC_THREAD_ATTRIBUTE_LIST list() const {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(space_.get());
  }

 private:
  std::vector<HANDLE> handles_;
  HANDLE job_;
  std::unique_ptr<std::byte[]> space_;
  bool initialised_ = false;
  bool beginsInJob_ = false;
};

// Suspended. In a group of its own, since a Ctrl+C is for this program, which passes it on as a
// stop. False, with the reason in GetLastError, when the system refuses.
bool Create(const std::wstring& program, std::wstring commandLine, STARTUPINFOEXW startup,
            const ProcessAttributes& attributes, PROCESS_INFORMATION& created) {
  constexpr DWORD kFlags =
      CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT | CREATE_NEW_PROCESS_GROUP;
  startup.lpAttributeList = attributes.list();
  return CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, kFlags,
                        nullptr, nullptr, &startup.StartupInfo, &created);
}

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

StartedProcess ExportProcesses::Start(const std::wstring& program,
                                      const std::wstring& commandLine) const {
  const PasswordInEnvironment environment(password_);
  const std::vector<HANDLE> inherited = {output_.writeEnd.get(), stop_.readEnd.get()};
  STARTUPINFOEXW startup{};
  startup.StartupInfo.cb = sizeof startup;
  startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  startup.StartupInfo.hStdOutput = output_.writeEnd.get();
  if (stopBy_ == StopBy::kEndOfInput) {
    startup.StartupInfo.hStdInput = stop_.readEnd.get();
    startup.StartupInfo.hStdError = output_.writeEnd.get();
  }
  PROCESS_INFORMATION created{};
  const ProcessAttributes inJob(inherited, job_.get());
  if (!inJob.BeginsInJob() || !Create(program, commandLine, startup, inJob, created)) {
    if (!Create(program, commandLine, startup, {inherited, nullptr}, created))
      return {{}, 0, GetLastError()};
    // Before it can start a worker. In a job of somebody else's it may be refused; the exporter
    // then outlives this program if that is ended by force.
    AssignProcessToJobObject(job_.get(), created.hProcess);
  }
  ResumeThread(created.hThread);
  CloseHandle(created.hThread);
  return {SystemHandle(created.hProcess), created.dwProcessId, 0};
}

}  // namespace larkspan::console
