// The text that stands where the library's exporter was told to leave out a picture. The exporter
// sets it, and who reads the files finds by it that their pictures are missing.
#pragma once

namespace larkspan {

// As a reader of the DXL gets it.
#define LARKSPAN_REMOVED_PICTURE "Picture removed by Brevink Export"
inline constexpr char kRemovedPictureText[] = "<" LARKSPAN_REMOVED_PICTURE ">";

// As it is handed to the exporter: a piece of DXL.
inline constexpr char kRemovedPictureRun[] =
    "<run><font size='9pt' color='#CCCCCC' />"
    "&lt;" LARKSPAN_REMOVED_PICTURE "&gt;</run>";
#undef LARKSPAN_REMOVED_PICTURE

}  // namespace larkspan
