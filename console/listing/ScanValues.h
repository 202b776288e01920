// The values of scan.txt, whose forms docs/listings.md tells, as a person or a program reads them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace larkspan::console {

// The number that the field is, written as the exporter writes one: no sign but a minus, no zeros
// in front. No value for any other text.
std::optional<std::int64_t> WholeNumberOf(std::string_view field);

// "2020-05-06T07:08:09.10Z". A field that is no time of the years 1 to 9999 stands as it is.
std::string TimeOf(std::string_view field);

// A size in bytes, from the digits of its bits: "524288". A number that is not whole has its
// fraction ("1048576.5"); what is no number is "NaN", with its bits where they are unusual,
// "Infinity" or "-Infinity". Each reads back as the number that it was.
std::string SizeOf(double bytes);

}  // namespace larkspan::console
