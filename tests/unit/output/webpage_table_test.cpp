#include "output/webpage_table.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/program_runner.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

TEST(WebpageTable, BeginsAndEndsAsAPageDoes) {
  Settings settings;
  settings.Title = "Tom & Jerry <3";
  const std::string start = WebpageHead(kScorePage, settings, "</TH><TH>a");
  EXPECT_THAT(start,
              StartsWith("<!DOCTYPE html><html lang=\"en\"><head><meta charset=\"UTF-8\" /><meta "
                         "http-equiv=\"X-UA-Compatible\" content=\"IE=edge\" /><meta "
                         "name=\"viewport\" content=\"width=device-width, initial-scale=1.0\" />"
                         "<title>Scores: Tom &amp; Jerry &lt;3</title>\n<!-- Flanks (Many-Flank "
                         "Rasch Measurement) Version "));
  EXPECT_THAT(start,
              EndsWith("</head><BODY><FONT FACE=\"Lucida Console, Andale Mono, Courier New\" "
                       "Size=\"-1\"><p style=\"white-space:nowrap;\" nowrap><h2 ALIGN=\"CENTER\">"
                       "Scores: Tom &amp; Jerry &lt;3</h2><table class=\"sortable\" CELLPADDING=5>"
                       "<thead><tr><TH>a</tr></thead><tbody>\n"));
  for (const char* color : {"--stripe-color: #e4e4e4;", "--th-color: #fff;", "--th-bg: #808080;",
                            "--td-color: #000;", "--td-on-stripe-color: #000;"})
    EXPECT_THAT(start, HasSubstr(color));
  EXPECT_THAT(WebpageEnd(), StartsWith("</tbody></table>\n<script>\n"));
  EXPECT_THAT(WebpageEnd(), EndsWith("</script>\n</body></html>\n"));
}

TEST(WebpageTable, TheFirstHeadingClosesNothing) {
  const std::string cells = "</TH><TH ALIGN=\"LEFT\">a</TH><TH ALIGN=\"LEFT\">b";
  EXPECT_THAT(
      WebpageHead(kGraphPage, {}, cells),
      EndsWith("<thead><tr><TH ALIGN=\"LEFT\">a</TH><TH ALIGN=\"LEFT\">b</tr></thead><tbody>\n"));
  EXPECT_THAT(WebpageHead(kGraphPage, {}, ""), EndsWith("<thead><tr></tr></thead><tbody>\n"));
}

// A browser in small: just what the script asks of a page.  Rows of three columns: labels, numbers
// with an attribute in one of them, ties.  Prints the labels from top to bottom after each click.
constexpr const char* kBrowser = R"(
const fs = require("fs");
const page = fs.readFileSync(process.argv[2], "utf8");
const script = /<script>([\s\S]*)<\/script>/.exec(page)[1];
function element(attributes, text) {
  const classes = new Set();
  return {
    textContent: text || "",
    hasAttribute: name => name in attributes,
    getAttribute: name => attributes[name],
    classList: {
      add: name => classes.add(name),
      remove: (...names) => names.forEach(name => classes.delete(name)),
      contains: name => classes.has(name)
    },
    classes
  };
}
const headings = [{}, {}, {"data-sort-tbr": "1"}, {"data-sort-col": "0"}].map(a => element(a));
const data = [["b", "10", "x"], ["a", "9", "x"], ["c", "-1.5", "w"], ["d", "", "y"]];
const rows = data.map(row => ({cells: row.map(text => element({}, " " + text + " "))}));
rows[0].cells[0] = element({"data-sort-alt": "zz"}, "b");
rows[3].cells[1] = element({"data-sort": "9.5"}, "no number");
const body = {rows, appendChild: part => { body.rows = part.rows; }};
const table = {tBodies: [body]};
headings.forEach(heading => {
  heading.parentNode = {cells: headings};
  heading.closest = what => what === "table" ? table : heading;
});
let listener;
global.document = {
  createDocumentFragment: () => ({rows: [], appendChild(row) { this.rows.push(row); }}),
  addEventListener: (what, handler) => { listener = handler; }
};
eval(script);
function click(column, altKey) {
  listener({target: headings[column], altKey, shiftKey: false});
  const labels = body.rows.map(row => row.cells[0].textContent.trim()).join("");
  console.log(column + " " + [...headings[column].classes] + " " + labels +
              " " + headings.reduce((sum, heading) => sum + heading.classes.size, 0));
}
click(1); click(1); click(1); click(0); click(0); click(2); click(2); click(3); click(0, true);
listener({target: {closest: () => null}});
)";

// Numbers as numbers, whatever their texts; the class of the direction on one heading alone.
// Column 2 has ties, which column 1 decides upwards; heading 3 sorts by column 0.
TEST(WebpageTable, AClickSortsByAColumnBothWays) {
  const ScratchFolder folder;
  folder.write("page.htm", WebpageEnd());
  folder.write("browser.js", kBrowser);
  ProgramCall call;
  call.program = "/usr/bin/env";
  call.arguments = {"node", folder.file("browser.js"), folder.file("page.htm")};
  const ProgramResult result = RunProgram(call);
  if (result.exitStatus == 127) GTEST_SKIP() << "node is not installed";
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.output,
            "1 dir-d bdac 1\n"
            "1 dir-u cadb 1\n"
            "1 dir-d bdac 1\n"
            "0 dir-d dcba 1\n"
            "0 dir-u abcd 1\n"
            "2 dir-d dabc 1\n"
            "2 dir-u cabd 1\n"
            "3 dir-d dcba 1\n"
            "0 dir-d bdca 1\n");
}

}  // namespace
}  // namespace flanks
