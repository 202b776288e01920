#include "tests/console/system/ConsoleRun.h"

#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <array>
#include <optional>
#include <stdexcept>
#include <utility>

namespace larkspan::console {

namespace {

using testing::UniqueSystemHandle;

// What takes longest, ten thousand notes, takes two minutes where much else runs.
constexpr DWORD kLimitMilliseconds = 300'000;
constexpr DWORD kLookMilliseconds = 20;
constexpr UINT kEndedByForce = 0xDEAD;

struct TestPipe {
  UniqueSystemHandle readEnd;
  UniqueSystemHandle writeEnd;
};

// The process that is started inherits one end.
TestPipe MakeTestPipe(bool inheritsReadEnd) {
  HANDLE readEnd = nullptr;
  HANDLE writeEnd = nullptr;
  if (!CreatePipe(&readEnd, &writeEnd, nullptr, 0)) throw std::runtime_error("no pipe");
  SetHandleInformation(inheritsReadEnd ? readEnd : writeEnd, HANDLE_FLAG_INHERIT,
                       HANDLE_FLAG_INHERIT);
  return {UniqueSystemHandle(readEnd), UniqueSystemHandle(writeEnd)};
}

UniqueSystemHandle MakeTestJob() {
  constexpr DWORD kMostProcesses = 16;
  UniqueSystemHandle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags =
      JOB_OBJECT_LIMIT_ACTIVE_PROCESS | JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  limits.BasicLimitInformation.ActiveProcessLimit = kMostProcesses;
  SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

testing::SystemProcess StartInJob(const std::wstring& executable, std::wstring commandLine,
                                  const std::array<HANDLE, 3>& standard, HANDLE job) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = standard[0];
  startup.hStdOutput = standard[1];
  startup.hStdError = standard[2];
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(executable.c_str(), commandLine.data(), nullptr, nullptr, TRUE,
                      CREATE_SUSPENDED, nullptr, nullptr, &startup, &process)) {
    throw std::runtime_error("the console program does not start");
  }
  const UniqueSystemHandle thread(process.hThread);
  testing::SystemProcess started{UniqueSystemHandle(process.hProcess), process.dwProcessId};
  if (!AssignProcessToJobObject(job, started.handle.get())) {
    TerminateProcess(started.handle.get(), kEndedByForce);
    throw std::runtime_error("the console program cannot be watched");
  }
  ResumeThread(thread.get());
  return started;
}

}  // namespace

struct ConsoleProcess::Pipes {
  TestPipe input = MakeTestPipe(true);
  TestPipe output = MakeTestPipe(false);
  TestPipe errors = MakeTestPipe(false);
};

PipeText::PipeText(UniqueSystemHandle readEnd)
    : readEnd_(std::move(readEnd)), thread_([this] { ReadUntilClosed(); }) {}

PipeText::~PipeText() { Close(); }

void PipeText::Close() {
  closes_ = true;
  if (thread_.joinable()) thread_.join();
  readEnd_.reset();
}

std::string PipeText::Read() const {
  const std::lock_guard lock(mutex_);
  return text_;
}

std::string PipeText::ReadAll() {
  if (thread_.joinable()) thread_.join();
  return Read();
}

// It looks before it reads: a read that waits could not be called back.
void PipeText::ReadUntilClosed() {
  std::array<char, 4096> bytes;
  DWORD count = 0;
  while (!closes_ && PeekNamedPipe(readEnd_.get(), nullptr, 0, nullptr, &count, nullptr)) {
    if (count == 0) {
      Sleep(kLookMilliseconds);
      continue;
    }
    if (!ReadFile(readEnd_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr))
      return;
    const std::lock_guard lock(mutex_);
    text_.append(bytes.data(), count);
  }
}

ConsoleProcess::ConsoleProcess(const std::wstring& executable, const std::wstring& commandLine)
    : ConsoleProcess(executable, commandLine, Pipes()) {}

// The ends that are the program's own close with `pipes`.
ConsoleProcess::ConsoleProcess(const std::wstring& executable, const std::wstring& commandLine,
                               Pipes pipes)
    : job_(MakeTestJob()),
      input_(std::move(pipes.input.writeEnd)),
      output_(std::move(pipes.output.readEnd)),
      errors_(std::move(pipes.errors.readEnd)),
      process_(StartInJob(
          executable, commandLine,
          {pipes.input.readEnd.get(), pipes.output.writeEnd.get(), pipes.errors.writeEnd.get()},
          job_.get())) {}

ConsoleProcess::~ConsoleProcess() { TerminateJobObject(job_.get(), kEndedByForce); }

void ConsoleProcess::Write(const std::string& bytes) {
  DWORD written = 0;
  WriteFile(input_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

void ConsoleProcess::BreakOutput() { output_.Close(); }

void ConsoleProcess::AwaitOutput(const std::string& text) {
  const bool came = AwaitCondition([&] { return output_.Read().find(text) != std::string::npos; });
  EXPECT_TRUE(came) << "standard output never held: " << text << "\n" << output_.Read();
}

void ConsoleProcess::EndByForce() { TerminateProcess(process_.handle.get(), kEndedByForce); }

void ConsoleProcess::EndSupervisor(UINT code) {
  const UniqueSystemHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL found = Process32FirstW(snapshot.get(), &entry); found;
       found = Process32NextW(snapshot.get(), &entry)) {
    if (entry.th32ParentProcessID != process_.id) continue;
    const UniqueSystemHandle child(OpenProcess(PROCESS_TERMINATE, FALSE, entry.th32ProcessID));
    EXPECT_TRUE(TerminateProcess(child.get(), code));
    return;
  }
  ADD_FAILURE() << "the console program has started nothing";
}

std::vector<DWORD> ConsoleProcess::Processes() const {
  constexpr std::size_t kMost = 64;
  struct {
    JOBOBJECT_BASIC_PROCESS_ID_LIST list;
    ULONG_PTR more[kMost];
  } ids{};
  if (!QueryInformationJobObject(job_.get(), JobObjectBasicProcessIdList, &ids, sizeof ids,
                                 nullptr)) {
    throw std::runtime_error("the job does not tell its processes");
  }
  const ULONG_PTR* const first = ids.list.ProcessIdList;
  return std::vector<DWORD>(first, first + ids.list.NumberOfProcessIdsInList);
}

void ConsoleProcess::AwaitNothingLeft() {
  EXPECT_TRUE(AwaitCondition([this] { return Processes().empty(); }))
      << Processes().size() << " processes are left";
}

ConsoleEnd ConsoleProcess::WaitForEnd() {
  const std::optional<DWORD> code =
      testing::AwaitExitCode(process_.handle.get(), kLimitMilliseconds);
  EXPECT_TRUE(code) << "the console program goes on\n" << output_.Read();
  if (!code) TerminateJobObject(job_.get(), kEndedByForce);
  return {code.value_or(kEndedByForce), output_.ReadAll(), errors_.ReadAll()};
}

bool AwaitCondition(const std::function<bool()>& condition) {
  for (DWORD waited = 0; waited < kLimitMilliseconds; waited += kLookMilliseconds) {
    if (condition()) return true;
    Sleep(kLookMilliseconds);
  }
  return condition();
}

}  // namespace larkspan::console
