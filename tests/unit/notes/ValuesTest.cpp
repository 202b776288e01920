#include "notes/Values.h"

#include <gtest/gtest.h>

#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::WORD;

// What the program offered for the text of a number.
WORD offeredBytes = 0;
const void* givenFormat = nullptr;

notes_api::STATUS LARKSPAN_NOTES_CALL FillThePlace(const notes_api::IntlSettings*,
                                                   const void* format, const double*, char* out,
                                                   WORD size, WORD* length) {
  offeredBytes = size;
  givenFormat = format;
  for (WORD i = 0; i < size; ++i) out[i] = '7';
  *length = static_cast<WORD>(size + 1);
  return 1;
}

// Neither the status nor a length of more than there is keeps the text from being taken.
TEST(ValuesTest, NumberHasFortyBytesAndTheDefaultFormat) {
  const ReplacedEntryPoint replaced("ConvertFLOATToText", FillThePlace);
  EXPECT_EQ(NumberToText(1.5, {}), std::string(40, '7'));
  EXPECT_EQ(offeredBytes, 40);
  EXPECT_EQ(givenFormat, nullptr);
}

}  // namespace
}  // namespace larkspan
