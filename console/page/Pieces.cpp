#include "console/page/Pieces.h"

// The header of the system's cryptography needs this one before it.
#include <windows.h>

#include <bcrypt.h>

#include <array>
#include <map>

#include "console/page/Html.h"
#include "console/page/PageTexts.h"

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

// Pictures of 24 by 24.
constexpr char kTick[] =
    "M12 1a11 11 0 100 22 11 11 0 000-22zm-1.6 16.2l-4.6-4.6 1.6-1.6 3 3 6.4-6.4 1.6 1.6z";
constexpr char kMark[] =
    "M12 2L.8 21.6h22.4zm-1.1 7h2.2l-.3 6.2h-1.6zM12 19a1.3 1.3 0 110-2.6 1.3 1.3 0 010 2.6z";
constexpr char kCross[] =
    "M12 1a11 11 0 100 22 11 11 0 000-22zm4.7 14.1l-1.6 1.6-3.1-3.1-3.1 3.1-1.6-1.6 "
    "3.1-3.1-3.1-3.1 1.6-1.6 3.1 3.1 3.1-3.1 1.6 1.6-3.1 3.1z";

struct Tone {
  const char* style;  // The class of the page's style.
  const char* sign;
};

Tone ToneOf(ExitCode code) {
  switch (code) {
    case ExitCode::kWhole:
      return {"whole", kTick};
    case ExitCode::kLosses:
      return {"losses", kMark};
    default:
      return {"incomplete", kCross};
  }
}

}  // namespace

std::string FillFrame(const PageParts& parts) {
  return Fill(kPageFrame, {{"nonce", Html(parts.nonce)},
                           {"version", Html(parts.version)},
                           {"title", Html(parts.title)},
                           {"style", std::string(kPageStyle)},
                           {"script", std::string(parts.script)},
                           {"head", parts.head},
                           {"facts", parts.facts},
                           {"notices", parts.notices},
                           {"views", parts.views},
                           {"footer", parts.footer}});
}

std::string Banner(ExitCode code, const std::string& word, const std::string& sentence) {
  const Tone tone = ToneOf(code);
  return std::string("<div class=\"verdict ") + tone.style +
         "\" id=\"verdict\"><svg viewBox=\"0 0 24 24\" aria-hidden=\"true\">"
         "<path fill=\"currentColor\" fill-rule=\"evenodd\" d=\"" +
         tone.sign + "\"/></svg><div><strong>" + Html(word) + "</strong><p>" + Html(sentence) +
         "</p></div><p class=\"code\">exit code " + std::to_string(static_cast<int>(code)) +
         "</p></div>\n";
}

std::string Tile(const std::string& label, const std::string& large, const std::string& small,
                 const std::string& tone) {
  const std::string classes = tone.empty() ? "" : " class=\"toned " + tone + "\"";
  return "<div" + classes + "><dt>" + Html(label) + "</dt><dd class=\"large\">" + Html(large) +
         "</dd>" + (small.empty() ? "" : "<dd class=\"small\">" + Html(small) + "</dd>") +
         "</div>\n";
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
