#include "console/page/Page.h"

#include "console/page/Html.h"
#include "console/page/PageTexts.h"
#include "console/page/Pieces.h"
#include "console/page/Sections.h"
#include "console/text/Times.h"

namespace larkspan::console {

namespace {

std::string Footer(const PageContent& content) {
  return "<p>Made by larkspan-console " + Html(content.version) + " on " +
         Html(TimeText(content.made)) + " from <span class=\"path\">" + Html(content.folder) +
         "</span>. It tells what the folder held at that time.</p>";
}

}  // namespace

std::string RenderPage(const PageContent& content, const std::string& nonce) {
  PageParts parts;
  parts.title = TitleOf(content) + " - export report";
  parts.version = content.version;
  parts.nonce = nonce;
  parts.script = kPageScript;
  parts.head = HeadSection(content);
  parts.facts = FactsSection(content);
  parts.notices = NoticesSection(content);
  parts.views = ViewsSection(content);
  parts.footer = Footer(content);
  return FillFrame(parts);
}

}  // namespace larkspan::console
