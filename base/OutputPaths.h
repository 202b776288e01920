// The names of everything in the output folder, one builder each. Every name begins with a
// backslash and is joined to the output folder by plain concatenation.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace larkspan::output {

// The output folder and a relative name that begins with a backslash, concatenated as they stand.
std::wstring Join(std::wstring_view outputFolder, std::wstring_view relativeName);

inline constexpr wchar_t kLog[] = L"\\log.txt";
inline constexpr wchar_t kAudit[] = L"\\audit.txt";
inline constexpr wchar_t kMarker[] = L"\\marker.txt";
inline constexpr wchar_t kIdTable[] = L"\\idtable.txt";
inline constexpr wchar_t kUnidIndex[] = L"\\unidindex.txt";
inline constexpr wchar_t kProperties[] = L"\\db.dxl";
inline constexpr wchar_t kScan[] = L"\\scan.txt";
inline constexpr wchar_t kServers[] = L"\\servers.txt";
inline constexpr wchar_t kAcl[] = L"\\acl.dxl";

// The DXL or XML file in progress.
inline constexpr wchar_t kTemporary[] = L"\\temp.tmp";

// What a file that the program writes itself is called until it is complete, from the path or the
// name that it will have ("\db.dxl.new").
inline constexpr wchar_t kStageSuffix[] = L".new";
std::wstring StageOf(std::wstring_view path);

// Subfolders of an archive, in the order of their creation.
inline constexpr wchar_t kDataFolder[] = L"\\data";
inline constexpr wchar_t kDesignFolder[] = L"\\design";
inline constexpr wchar_t kRawDesignFolder[] = L"\\design2";
inline constexpr wchar_t kProfileFolder[] = L"\\profile";
inline constexpr wchar_t kViewsFolder[] = L"\\views";
inline constexpr std::array kSubfolders = {kDataFolder, kDesignFolder, kRawDesignFolder,
                                           kProfileFolder, kViewsFolder};

// The relative name of a note's DXL file in a subfolder ("\data\000012F6.dxl"), or in the output
// folder itself when the subfolder is empty.
std::wstring NoteFile(std::wstring_view subfolder, std::uint32_t noteId);

// The relative name of the file with a view's content ("\views\000012F6.xml").
std::wstring ViewFile(std::uint32_t viewId);

}  // namespace larkspan::output
