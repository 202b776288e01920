#include "tests/faults/FileFaultPlan.h"

#include <windows.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

#include "base/Utf8.h"

namespace larkspan {

namespace {

const std::set<std::string> kOperations = {"open",  "read",   "write", "flush",
                                           "close", "delete", "move",  "folder"};

constexpr char kNoError[] = "noError";

const std::map<std::string, FileError> kErrors = {
    {"diskFull", {ENOSPC, ERROR_DISK_FULL}},
    {"sharingViolation", {EACCES, ERROR_SHARING_VIOLATION}},
    {"accessDenied", {EACCES, ERROR_ACCESS_DENIED}},
    {"fileNotFound", {ENOENT, ERROR_FILE_NOT_FOUND}},
    {"pathNotFound", {ENOENT, ERROR_PATH_NOT_FOUND}},
    {"pathTooLong", {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE}},
    {kNoError, {}}};

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char byte) { return static_cast<char>(std::tolower(byte)); });
  return text;
}

int ReadNumber(const std::string& digits) {
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) {
    throw std::invalid_argument("no number: " + digits);
  }
  return std::stoi(digits);
}

void ReadCalls(const std::string& calls, FileFault& fault) {
  const std::size_t hyphen = calls.find('-');
  if (calls == "*") {
    fault.lastCall = INT_MAX;
  } else if (hyphen == std::string::npos) {
    fault.firstCall = fault.lastCall = ReadNumber(calls);
  } else {
    fault.firstCall = ReadNumber(calls.substr(0, hyphen));
    const std::string last = calls.substr(hyphen + 1);
    fault.lastCall = last.empty() ? INT_MAX : ReadNumber(last);
  }
  if (fault.firstCall < 1 || fault.lastCall < fault.firstCall) {
    throw std::invalid_argument("no such calls: " + calls);
  }
}

FileFault ReadFault(const std::vector<std::string>& words) {
  if (words.size() < 4 || words.size() > 5 || !kOperations.contains(words[0]) ||
      !kErrors.contains(words[3])) {
    throw std::invalid_argument("no fault");
  }
  if (words[0] != "write" && (words.size() == 5 || words[3] == kNoError)) {
    throw std::invalid_argument("for a write only");
  }
  FileFault fault{
      .operation = words[0], .file = LowerCase(words[1]), .error = kErrors.at(words[3])};
  ReadCalls(words[2], fault);
  if (words.size() == 5) fault.bytes = static_cast<std::size_t>(ReadNumber(words[4]));
  return fault;
}

std::vector<std::string> Words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

}  // namespace

std::vector<FileFault> ParseFileFaultPlan(const std::string& plan) {
  std::vector<FileFault> faults;
  std::istringstream stream(plan);
  for (std::string text; std::getline(stream, text, ';');) {
    try {
      faults.push_back(ReadFault(Words(text)));
    } catch (const std::exception& error) {
      throw std::invalid_argument("in \"" + text + "\": " + error.what());
    }
  }
  return faults;
}

std::string FileNameOf(std::wstring_view path) {
  const std::size_t separator = path.find_last_of(L"\\/");
  return LowerCase(
      WideToUtf8(separator == std::wstring_view::npos ? path : path.substr(separator + 1)));
}

}  // namespace larkspan
