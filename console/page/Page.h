// The page about an export: one HTML file that needs nothing else, asks no other machine for
// anything, and runs no script but its own.
#pragma once

#include <string>

#include "console/page/PageContent.h"

namespace larkspan::console {

// The nonce marks the page's own style and script: the policy of the page allows no other.
std::string RenderPage(const PageContent& content, const std::string& nonce);

}  // namespace larkspan::console
