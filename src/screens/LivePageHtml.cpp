#include "screens/LivePageHtml.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace quillon::screens {

namespace {

std::string styleSheet(const LivePageTheme& theme, LivePageLayout layout) {
    const std::string background = theme.transparentBackground ? "transparent" : theme.backgroundColour;
    if (layout == LivePageLayout::confidence)
        return fmt::format(R"(html, body {{ margin: 0; height: 100%; background: #000; color: {text};
  font-family: {font}; overflow: hidden; }}
#passage {{ box-sizing: border-box; height: 100vh; padding: 3vh 4vw; display: flex; flex-direction: column; }}
#heading {{ color: {reference}; font-size: 6vh; font-weight: bold; }}
#version {{ color: #aaa; font-size: 4vh; margin-left: 1em; font-weight: normal; }}
#text {{ flex: 1; font-size: {size}px; line-height: 1.3; overflow: hidden; margin-top: 2vh; }}
#passage[data-state="clear"] #text {{ color: #555; }}
)",
                           fmt::arg("text", theme.textColour), fmt::arg("font", theme.fontFamily),
                           fmt::arg("reference", theme.referenceColour), fmt::arg("size", theme.fontSize * 2));
    const std::string placement = theme.position == "top"      ? "top: 4vh;"
                                  : theme.position == "middle" ? "top: 50%; transform: translate(-50%, -50%);"
                                                               : "bottom: 5vh;";
    const std::string centring = theme.position == "middle" ? "" : "transform: translateX(-50%);";
    return fmt::format(R"(html, body {{ margin: 0; height: 100%; background: {background}; overflow: hidden; }}
#passage {{ position: absolute; left: 50%; {placement} {centring} width: {width}%; box-sizing: border-box;
  padding: 0.6em 1em; background: {panel}; color: {text}; font-family: {font}; border-radius: 0.3em; }}
#passage[data-state="clear"] {{ display: none; }}
#heading {{ color: {reference}; font-size: {referenceSize}px; font-weight: bold; margin-bottom: 0.2em; }}
#version {{ font-weight: normal; opacity: 0.8; margin-left: 0.6em; }}
#part {{ font-weight: normal; opacity: 0.8; margin-left: 0.6em; }}
#text {{ font-size: {size}px; line-height: 1.25; max-height: {lines}em; overflow: hidden; }}
)",
                       fmt::arg("background", background), fmt::arg("placement", placement),
                       fmt::arg("centring", centring), fmt::arg("width", theme.width),
                       fmt::arg("panel", theme.panelColour), fmt::arg("text", theme.textColour),
                       fmt::arg("font", theme.fontFamily), fmt::arg("reference", theme.referenceColour),
                       fmt::arg("referenceSize", theme.fontSize * 3 / 4), fmt::arg("size", theme.fontSize),
                       fmt::arg("lines", theme.maximumLines * 1.25));
}

// Fitting happens in the browser, where the real font is measured: the text shrinks a step at
// a time down to the theme's minimum, and a passage still too long is cut into parts shown in
// turn. The confidence layout only shrinks, since the preacher reads the whole passage at once.
constexpr const char* script = R"JS(
const passage = document.getElementById('passage');
const reference = document.getElementById('reference');
const version = document.getElementById('version');
const part = document.getElementById('part');
const text = document.getElementById('text');
let rotation = null;
function overflowing() { return text.scrollHeight > text.clientHeight + 1; }
function shrinkToFit() {
  let size = FONT_SIZE;
  text.style.fontSize = size + 'px';
  while (overflowing() && size > MINIMUM_SIZE) { size -= 1; text.style.fontSize = size + 'px'; }
  return !overflowing();
}
function splitIntoParts(words) {
  const parts = [];
  let current = [];
  for (const word of words) {
    text.textContent = current.concat([word]).join(' ');
    if (current.length > 0 && overflowing()) { parts.push(current.join(' ')); current = [word]; }
    else current.push(word);
  }
  if (current.length > 0) parts.push(current.join(' '));
  return parts;
}
function showParts(parts) {
  let index = 0;
  const step = () => {
    text.textContent = parts[index];
    part.textContent = '(' + (index + 1) + '/' + parts.length + ')';
    index = (index + 1) % parts.length;
  };
  step();
  rotation = setInterval(step, PART_SECONDS * 1000);
}
function render(live) {
  if (rotation) { clearInterval(rotation); rotation = null; }
  if (part) part.textContent = '';
  if (!live.reference) {
    passage.dataset.state = 'clear';
    reference.textContent = ''; version.textContent = ''; text.textContent = '';
    return;
  }
  passage.dataset.state = 'live';
  reference.textContent = live.reference;
  version.textContent = live.version || '';
  text.textContent = live.text || '';
  const fits = shrinkToFit();
  passage.dataset.fit = fits ? (text.style.fontSize === FONT_SIZE + 'px' ? 'whole' : 'shrunk') : 'split';
  if (fits || !SPLITS) return;
  showParts(splitIntoParts((live.text || '').split(/\s+/).filter(w => w.length > 0)));
}
if (passage.dataset.state === 'live') render({reference: reference.textContent, version: version.textContent,
                                              text: text.textContent});
const source = new EventSource('events' + location.search);
source.addEventListener('passage', event => render(JSON.parse(event.data)));
)JS";

std::string replaceAll(std::string text, std::string_view from, const std::string& to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

} // namespace

std::string escapeHtml(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        case '\'':
            result += "&#39;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

std::string renderLivePage(const LivePageTheme& theme, LivePageLayout layout,
                           const std::optional<mesh::LiveScripture>& live) {
    const bool lowerThird = layout == LivePageLayout::lowerThird;
    std::string code = replaceAll(script, "MINIMUM_SIZE", std::to_string(lowerThird ? theme.minimumFontSize : 12));
    code = replaceAll(code, "FONT_SIZE", std::to_string(lowerThird ? theme.fontSize : theme.fontSize * 2));
    code = replaceAll(code, "PART_SECONDS", "7");
    code = replaceAll(code, "SPLITS", lowerThird ? "true" : "false");
    const std::string reference = live ? escapeHtml(live->reference) : "";
    const std::string version = live ? escapeHtml(live->version) : "";
    const std::string words = live ? escapeHtml(live->text) : "";
    const std::string heading = R"(<div id="heading"><span id="reference">)" + reference +
                                R"(</span><span id="version">)" + version + R"(</span><span id="part"></span></div>)";
    return fmt::format(R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>{title}</title>
<style>
{style}</style></head>
<body><div id="passage" data-state="{state}">{heading}<div id="text">{words}</div></div>
<script>{script}</script></body></html>
)",
                       fmt::arg("title", lowerThird ? "Quillon live passage" : "Quillon confidence monitor"),
                       fmt::arg("style", styleSheet(theme, layout)), fmt::arg("state", live ? "live" : "clear"),
                       fmt::arg("heading", heading), fmt::arg("words", words), fmt::arg("script", code));
}

std::string passageEvent(const std::optional<mesh::LiveScripture>& live) {
    nlohmann::json data = nlohmann::json::object();
    if (live)
        data = {{"reference", live->reference}, {"version", live->version}, {"text", live->text}};
    // One line of JSON: a newline would end the event's data field early.
    return "event: passage\ndata: " + data.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n\n";
}

} // namespace quillon::screens
