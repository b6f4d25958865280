#include "output/webpage_table.h"

#include <algorithm>

#include "base/text.h"
#include "output/row_writer.h"
#include "run/program_mark.h"

namespace flanks {
namespace {

// The texts below have "^" for the double quotation mark.
constexpr std::string_view kHead =
    "<!DOCTYPE html><html lang=^en^><head><meta charset=^UTF-8^ /><meta http-equiv=^X-UA-Compatible"
    "^ content=^IE=edge^ /><meta name=^viewport^ content=^width=device-width, initial-scale=1.0^ "
    "/>";
constexpr std::string_view kBodyStart = "</head><BODY><FONT FACE=^";
constexpr std::string_view kParagraph = "^ Size=^-1^><p style=^white-space:nowrap;^ nowrap>";
constexpr std::string_view kTitleStart = "<h2 ALIGN=^CENTER^>";
constexpr std::string_view kTableStart = "</h2><table class=^sortable^ CELLPADDING=5><thead><tr>";
constexpr std::string_view kHeadClosing = "</TH>";

constexpr std::string_view kStyle = R"(
<style>
.sortable {
  --stripe-color: #e4e4e4;
  --th-color: #fff;
  --th-bg: #808080;
  --td-color: #000;
  --td-on-stripe-color: #000;
  border-spacing: 0;
  margin: 0 auto;
}
.sortable thead th {
  position: sticky;
  top: 0;
  background: var(--th-bg);
  color: var(--th-color);
  cursor: pointer;
  user-select: none;
  white-space: nowrap;
}
.sortable thead th::after {
  content: "\2195";
  display: inline-block;
  width: 1em;
  margin-left: .3em;
  text-align: center;
  opacity: .5;
}
.sortable thead th.dir-u::after { content: "\25B2"; opacity: 1; }
.sortable thead th.dir-d::after { content: "\25BC"; opacity: 1; }
.sortable tbody td { color: var(--td-color); white-space: nowrap; }
.sortable tbody tr:nth-child(odd) { background: var(--stripe-color); }
.sortable tbody tr:nth-child(odd) td { color: var(--td-on-stripe-color); }
</style>
)";

// A click sorts downwards from the largest, the next one upwards, and so on.  Of a cell its
// attribute data-sort counts before its text; with the Alt or Shift key, data-sort-alt before
// both.  Of a heading, data-sort-col names the column to sort by and data-sort-tbr the one that
// decides between equals.  The sort is stable.
constexpr std::string_view kScript = R"(
<script>
(function () {
  "use strict";
  function valueOf(row, column, alternative) {
    var cell = row.cells[column];
    if (!cell) return "";
    if (alternative && cell.hasAttribute("data-sort-alt")) return cell.getAttribute("data-sort-alt");
    if (cell.hasAttribute("data-sort")) return cell.getAttribute("data-sort");
    return cell.textContent.trim();
  }
  function isNumber(text) {
    return text !== "" && isFinite(Number(text));
  }
  function compare(a, b) {
    if (isNumber(a) && isNumber(b)) return Number(a) - Number(b);
    return a.localeCompare(b);
  }
  function columnOf(heading, attribute, otherwise) {
    return heading.hasAttribute(attribute) ? Number(heading.getAttribute(attribute)) : otherwise;
  }
  function sortRows(rows, column, tieColumn, direction, alternative) {
    var keyed = rows.map(function (row) {
      return {
        row: row,
        key: valueOf(row, column, alternative),
        tie: tieColumn < 0 ? "" : valueOf(row, tieColumn, alternative)
      };
    });
    keyed.sort(function (a, b) {
      return direction * compare(a.key, b.key) || compare(a.tie, b.tie);
    });
    return keyed.map(function (one) { return one.row; });
  }
  function sortBy(heading, alternative) {
    var headings = Array.prototype.slice.call(heading.parentNode.cells);
    var table = heading.closest("table");
    var body = table.tBodies[0];
    var downwards = !heading.classList.contains("dir-d");
    headings.forEach(function (other) { other.classList.remove("dir-d", "dir-u"); });
    heading.classList.add(downwards ? "dir-d" : "dir-u");
    var column = columnOf(heading, "data-sort-col", headings.indexOf(heading));
    var tie = columnOf(heading, "data-sort-tbr", -1);
    var rows = Array.prototype.slice.call(body.rows);
    var place = document.createDocumentFragment();
    sortRows(rows, column, tie, downwards ? -1 : 1, alternative).forEach(function (row) {
      place.appendChild(row);
    });
    body.appendChild(place);
  }
  document.addEventListener("click", function (event) {
    var heading = event.target.closest("table.sortable thead th");
    if (heading) sortBy(heading, event.altKey || event.shiftKey);
  });
})();
</script>
)";

std::string Quoted(std::string_view text) {
  std::string quoted(text);
  ReplaceCharacter(quoted, '^', '"');
  return quoted;
}

}  // namespace

std::string WebpageHead(std::string_view what, const Settings& settings, std::string_view cells) {
  const std::string title = std::string(what) + PageText(settings.Title);
  cells.remove_prefix(std::min(kHeadClosing.size(), cells.size()));
  return Quoted(kHead) + "<title>" + title + "</title>\n<!-- " + ProgramAndDate() + " -->" +
         std::string(kStyle) + Quoted(kBodyStart) + settings.Webpagefonts + Quoted(kParagraph) +
         Quoted(kTitleStart) + title + Quoted(kTableStart) + std::string(cells) +
         "</tr></thead><tbody>\n";
}

std::string WebpageEnd() {
  return "</tbody></table>" + std::string(kScript) + "</body></html>\n";
}

}  // namespace flanks
