#include "sheet.h"
#include <stdio.h>
#include <fstream>
#include <stdexcept>

namespace demo {
namespace {

const char* const style = R"(
:root { --ink: #1d2228; --soft: #5d6873; --paper: #f4f5f6; --card: #fff; --line: #dde1e5; --mark: #0b62a8; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e6e9ec; --soft: #98a3ad; --paper: #15181b; --card: #1e2327; --line: #323a41; --mark: #76b9ee; }
}
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 1280px; padding: 32px 24px 64px; background: var(--paper); color: var(--ink);
  font: 15px/1.5 system-ui, sans-serif; }
h1 { font-size: 26px; margin: 0 0 12px; }
h2 { font-size: 19px; margin: 44px 0 2px; }
h2 + p { margin: 0 0 14px; color: var(--soft); max-width: 80ch; }
dl { display: flex; flex-wrap: wrap; gap: 8px 32px; margin: 0; }
dt { font-size: 12px; color: var(--soft); }
dd { margin: 0; font-weight: 600; }
main { display: block; }
.grid { display: grid; grid-template-columns: repeat(auto-fill, minmax(280px, 1fr)); gap: 16px; }
figure { margin: 0; background: var(--card); border: 1px solid var(--line); border-radius: 6px; overflow: hidden; }
figure img { display: block; width: 100%; height: auto; }
figcaption { padding: 10px 12px 12px; }
figcaption b { display: block; }
figcaption p { margin: 2px 0 6px; color: var(--soft); font-size: 13px; line-height: 1.4; }
code { font: 12px/1.4 ui-monospace, monospace; color: var(--mark); overflow-wrap: anywhere; }
table { border-collapse: collapse; margin: 8px 0 16px; font-variant-numeric: tabular-nums; }
th { text-align: left; font-weight: 600; color: var(--soft); font-size: 13px; }
th, td { padding: 4px 24px 4px 0; border-bottom: 1px solid var(--line); }
.time { display: block; font-size: 12px; font-variant-numeric: tabular-nums; }
)";

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '&') result += "&amp;";
    else if (c == '<') result += "&lt;";
    else if (c == '>') result += "&gt;";
    else if (c == '"') result += "&quot;";
    else result += c;
  }
  return result;
}

}  // namespace

void Sheet::fact(const std::string& name, const std::string& value) {
  facts_.emplace_back(name, value);
  printf("%-13s %s\n", name.c_str(), value.c_str());
}

void Sheet::section(const std::string& title, const std::string& text) {
  sections_.push_back({title, text, {}, {}});
  printf("\n%-46s %10s %10s\n", title.c_str(), "ms", "ns/pixel");
}

void Sheet::picture(const Bytes& image, const std::string& stem, const std::string& title, const std::string& caption,
                    const std::string& call, double seconds) {
  char time[64] = "";
  if (seconds > 0) {
    const double perPixel = seconds * 1e9 / ((double)image.width * image.height);
    snprintf(time, sizeof time, "%.3f ms, %.2f ns a pixel", seconds * 1e3, perPixel);
    printf("  %-44s %10.3f %10.3f\n", title.c_str(), seconds * 1e3, perPixel);
    fflush(stdout);
  }
  sections_.back().pictures.push_back(
      {save(image, directory_, stem), title, caption, call, time, image.width, image.height});
}

void Sheet::table(const std::vector<std::string>& head, const std::vector<std::vector<std::string>>& rows) {
  std::string& out = sections_.back().tables;
  const auto row = [&](const std::vector<std::string>& cells, const char* tag) {
    out += "<tr>";
    for (const auto& cell : cells) {
      out += std::string("<") + tag + ">" + escaped(cell) + "</" + tag + ">";
      printf("%s%-22s", &cell == cells.data() ? "  " : " ", cell.c_str());
    }
    out += "</tr>\n";
    printf("\n");
  };
  out += "<table>\n";
  row(head, "th");
  for (const auto& cells : rows) row(cells, "td");
  out += "</table>\n";
}

std::string Sheet::finish(const std::string& title) {
  std::string path = directory_ + "/index.html";
  std::ofstream out(path);
  out << "<!doctype html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n"
      << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" << escaped(title)
      << "</title>\n<style>" << style << "</style>\n<header>\n<h1>" << escaped(title) << "</h1>\n<dl>\n";
  for (const auto& [name, value] : facts_)
    out << "<div><dt>" << escaped(name) << "</dt><dd>" << escaped(value) << "</dd></div>\n";
  out << "</dl>\n</header>\n<main>\n";
  for (const Section& section : sections_) {
    out << "<h2>" << escaped(section.title) << "</h2>\n<p>" << escaped(section.text) << "</p>\n<div class=\"grid\">\n";
    for (const Picture& p : section.pictures) {
      out << "<figure><a href=\"" << p.file << "\"><img src=\"" << p.file << "\" width=\"" << p.width << "\" height=\""
          << p.height << "\" alt=\"" << escaped(p.title) << "\"></a>\n<figcaption><b>" << escaped(p.title) << "</b><p>"
          << escaped(p.caption) << "</p>";
      if (!p.call.empty()) out << "<code>" << escaped(p.call) << "</code>";
      if (!p.time.empty()) out << "<span class=\"time\">" << p.time << "</span>";
      out << "</figcaption></figure>\n";
    }
    out << "</div>\n" << section.tables;
  }
  out << "</main>\n</html>\n";
  if (!out.flush()) throw std::runtime_error(path + ": can't be written");
  return path;
}

}  // namespace demo
