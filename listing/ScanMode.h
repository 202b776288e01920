// Scan mode: the databases of a server, or of this machine, in scan.txt.
#pragma once

namespace larkspan {

// Lists the data directory of the settings' server: one line for the server, then one for each
// database and folder. What fails is logged.
void RunScanMode();

}  // namespace larkspan
