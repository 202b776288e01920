#include "console/page/Page.h"

// The header of the system's cryptography needs this one before it.
#include <windows.h>

#include <bcrypt.h>

#include <array>
#include <map>
#include <string_view>

#include "console/page/Html.h"
#include "console/page/PageTexts.h"
#include "console/page/Sections.h"
#include "console/page/Times.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

using Parts = std::map<std::string, std::string, std::less<>>;

// Puts the parts in the places of their names, in one pass: what a part holds is never taken for
// the name of another.
std::string Fill(std::string_view frame, const Parts& parts) {
  std::string filled;
  for (std::size_t at = 0;;) {
    const std::size_t begin = frame.find("{{", at);
    if (begin == std::string_view::npos) return filled.append(frame.substr(at));
    const std::size_t end = frame.find("}}", begin);
    filled.append(frame.substr(at, begin - at));
    filled.append(parts.at(std::string(frame.substr(begin + 2, end - begin - 2))));
    at = end + 2;
  }
}

std::string Footer(const PageContent& content) {
  return "<p>Made by larkspan-console " + Html(content.version) + " on " +
         Html(TimeText(content.made)) + " from <span class=\"path\">" + Html(content.folder) +
         "</span>. It tells what the folder held at that time.</p>";
}

}  // namespace

std::string RenderPage(const PageContent& content, const std::string& nonce) {
  return Fill(kPageFrame, {{"nonce", Html(nonce)},
                           {"version", Html(content.version)},
                           {"title", Html(TitleOf(content)) + " - export report"},
                           {"style", std::string(kPageStyle)},
                           {"script", std::string(kPageScript)},
                           {"head", HeadSection(content)},
                           {"facts", FactsSection(content)},
                           {"notices", NoticesSection(content)},
                           {"views", ViewsSection(content)},
                           {"footer", Footer(content)}});
}

std::string MakeNonce() {
  std::array<unsigned char, 16> bytes;
  if (BCryptGenRandom(nullptr, bytes.data(), static_cast<ULONG>(bytes.size()),
                      BCRYPT_USE_SYSTEM_PREFERRED_RNG) < 0)
    return {};
  std::string nonce;
  for (const unsigned char byte : bytes) {
    nonce += "0123456789abcdef"[byte >> 4];
    nonce += "0123456789abcdef"[byte & 15];
  }
  return nonce;
}

}  // namespace larkspan::console
