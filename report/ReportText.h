// Appending to the text files that people read after a run.
#pragma once

#include <string>
#include <string_view>

namespace larkspan {

// Appends a text to a file, which is made when missing: in UTF-8, cut to a line buffer, with each
// line feed as carriage return and line feed. The text is appended in one piece, whatever other
// threads append to the file; processes never do at the same time. A file that cannot be opened, or
// takes only a part, drops the text silently. Any thread may call.
void AppendReportText(const std::wstring& path, std::wstring_view text);

}  // namespace larkspan
