// What the tests of the byte readers share: the library, and what a writer prints. These tests run
// as Windows programs and natively under sanitizers.
#pragma once

#include <tinyxml2.h>

#include <functional>
#include <string>

#include "tests/support/standin/StandinTest.h"

namespace larkspan {

// What a writer prints, without the printer's last line end.
inline std::string Printed(const std::function<void(tinyxml2::XMLPrinter&)>& write) {
  tinyxml2::XMLPrinter printer;
  write(printer);
  std::string text = printer.CStr();
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

// Runs the library on a machine whose decimal separator has two characters.
class ReaderTest : public standin_test::StandinTest {
 protected:
  ReaderTest() { Start("StandinDecimalSeparator=,,\n"); }
};

}  // namespace larkspan
