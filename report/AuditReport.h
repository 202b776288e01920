// The audit report: audit.txt in the output folder, the summary of one export run for people. The
// supervisor and the first worker write it, one after another, each text one open, write and
// close. A file that cannot be opened drops the text silently. Any thread may call.
#pragma once

#include <string>

namespace larkspan {

// Appends one formatted text; "%s" stands for wide text. A text of more than 1023 characters, or
// 1023 bytes in UTF-8, is cut.
void AuditInFolder(const std::wstring& outputFolder, const wchar_t* format, ...);

// The same in the output folder of this process's settings.
void Audit(const wchar_t* format, ...);

}  // namespace larkspan
