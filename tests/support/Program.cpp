#include "tests/support/Program.h"

#include <array>
#include <optional>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace larkspan::testing {

namespace {

constexpr DWORD kEndLimitMilliseconds = 120000;
constexpr UINT kEndedByForce = 0xDEAD;

std::pair<UniqueSystemHandle, UniqueSystemHandle> MakePipe() {
  HANDLE readEnd = nullptr;
  HANDLE writeEnd = nullptr;
  if (!CreatePipe(&readEnd, &writeEnd, nullptr, 0)) throw std::runtime_error("no pipe");
  return {UniqueSystemHandle(readEnd), UniqueSystemHandle(writeEnd)};
}

void MakeInheritable(const UniqueSystemHandle& handle) {
  SetHandleInformation(handle.get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
}

int CountOccurrences(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos;
       at = text.find(part, at + part.size())) {
    ++count;
  }
  return count;
}

}  // namespace

std::wstring ProgramFolder() {
  std::array<wchar_t, 1024> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  const std::wstring file = path.data();
  return file.substr(0, file.find_last_of(L"\\/"));
}

StopPipe::StopPipe() {
  std::tie(readEnd_, writeEnd_) = MakePipe();
  MakeInheritable(readEnd_);
}

std::wstring StopPipe::HandleText() const {
  return std::to_wstring(reinterpret_cast<std::intptr_t>(readEnd_.get()));
}

void StopPipe::GiveWriteEndTo(HANDLE process) {
  HANDLE given = nullptr;
  if (!DuplicateHandle(GetCurrentProcess(), writeEnd_.get(), process, &given, 0, FALSE,
                       DUPLICATE_SAME_ACCESS)) {
    throw std::runtime_error("the process does not take the pipe");
  }
  writeEnd_.reset();
}

void StopPipe::Write(const std::string& bytes) {
  DWORD written = 0;
  WriteFile(writeEnd_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

Program::Program(const std::wstring& executable, const std::wstring& commandLine) {
  UniqueSystemHandle outputWriteEnd;
  std::tie(output_, outputWriteEnd) = MakePipe();
  MakeInheritable(outputWriteEnd);
  process_ = StartProcess(executable, commandLine, outputWriteEnd.get(), nullptr);
}

Program::~Program() {
  if (!ended_) TerminateProcess(process_.handle.get(), kEndedByForce);
}

bool Program::ReadMore() {
  std::array<char, 4096> buffer;
  DWORD count = 0;
  if (!ReadFile(output_.get(), buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr)) {
    return false;
  }
  read_.append(buffer.data(), count);
  return count > 0;
}

bool Program::ReadUntil(const std::string& text, int times) {
  while (CountOccurrences(read_, text) < times) {
    if (!ReadMore()) return false;
  }
  return true;
}

ProgramResult Program::WaitForEnd() {
  while (ReadMore()) {
  }
  std::optional<DWORD> exitCode = AwaitExitCode(process_.handle.get(), kEndLimitMilliseconds);
  if (!exitCode) {
    TerminateProcess(process_.handle.get(), kEndedByForce);
    exitCode = AwaitExitCode(process_.handle.get(), kEndLimitMilliseconds);
  }
  ended_ = true;
  return {exitCode.value_or(kEndedByForce), read_};
}

}  // namespace larkspan::testing
