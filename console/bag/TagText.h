// The text files of a bag: their characters, their lines and their elements.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/bag/BagFaults.h"
#include "console/bag/BagTree.h"
#include "console/text/Utf.h"

namespace larkspan::console {

// A code page of Windows.
using CodePage = std::uint32_t;
inline constexpr CodePage kUtf8CodePage = 65001;

// Of a name such as "UTF-8" or "ISO-8859-1"; no value for one that Windows does not know or cannot
// read.
std::optional<CodePage> CodePageOf(std::string_view name);

// The content as UTF-8, without a byte order mark. No value when it is no text of that code page.
std::optional<std::string> TextFrom(std::string_view content, CodePage codePage);

// The same of a file of the bag. No value when there is none, which is an error of its kind.
std::optional<std::string> ReadTagText(const BagTree& tree, const BagFile& file, CodePage codePage,
                                       BagFaults& faults);

// The index of a file in the bag's own folder, found although its name has other letters, which is
// a warning.
std::optional<std::size_t> FindTagFile(const BagTree& tree, const std::string& path,
                                       BagFaults& faults);

struct TagLines {
  std::vector<std::string_view> lines;  // Within the text, without their ends.
  bool endsDiffer = false;              // Some end in a line feed, others in a carriage return.
};

// Lines end in a line feed, a carriage return or both; an end behind the last one begins no other.
TagLines SplitTagLines(std::string_view text);

bool IsBlank(char letter);  // A space or a tab.
std::string_view WithoutBlanks(std::string_view text);
std::string LowerCase(std::string_view ascii);

}  // namespace larkspan::console
