// Made-up content of a page, for tests.
#pragma once

#include <string>

#include "console/page/PageContent.h"

namespace larkspan::console {

// An archive of 60 notes, of which three are lost and one is without its pictures.
PageContent ContentWithLosses();

// The same with so many lost notes more, of which each has an ID and a cause of its own.
PageContent ContentWithManyLosses(std::size_t count);

// How often a part stands in a text.
std::size_t TimesIn(const std::string& text, const std::string& part);

}  // namespace larkspan::console
