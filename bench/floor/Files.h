// The system's file operations, as few and as bare as they can be. What fails ends the process: a
// floor that leaves something out would measure nothing.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace larkspan::bench {

// Tells the operation and the system's error, and ends the process.
[[noreturn]] void Fail(const char* operation);

// Opens, writes in one piece and closes.
void ReplaceFile(const std::wstring& path, std::string_view bytes);
void AppendToFile(const std::wstring& path, std::string_view bytes);

// A missing file is as good as a deleted one.
void DeleteIfThere(const std::wstring& path);

// Never replaces a file.
void Move(const std::wstring& from, const std::wstring& to);

void CreateFolder(const std::wstring& path);

// A note's file below the folder, or a view's.
std::wstring NumberedFile(const std::wstring& folder, std::uint32_t number, const wchar_t* ending);

}  // namespace larkspan::bench
