#include "import/xml_pieces.h"

#include <algorithm>

namespace flanks {
namespace {

constexpr std::size_t kBlockBytes = std::size_t{1} << 16;
constexpr std::size_t kLongestPiece = std::size_t{1} << 26;

constexpr std::string_view kNameEnds = " \t\r\n/>";

std::string_view LocalName(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

}  // namespace

bool XmlPieces::Fail(const char* words) {
  fault_ = words;
  return false;
}

// Reads a block more; false at the end.
bool XmlPieces::Fill() {
  if (exhausted_ || rest().size() > kLongestPiece) return false;
  buffer_.erase(0, begin_);
  begin_ = 0;
  const std::size_t former = buffer_.size();
  buffer_.resize(former + kBlockBytes);
  const std::size_t taken = std::min(read_(buffer_.data() + former, kBlockBytes), kBlockBytes);
  buffer_.resize(former + taken);
  exhausted_ = taken == 0;
  return !exhausted_;
}

bool XmlPieces::Has(std::size_t bytes) {
  while (rest().size() < bytes)
    if (!Fill()) return false;
  return true;
}

// Where the mark begins, counted from begin_.
std::size_t XmlPieces::Find(std::string_view mark, std::size_t from) {
  while (true) {
    const std::size_t at = rest().find(mark, from);
    if (at != std::string_view::npos) return at;
    from = std::max(from, rest().size() - std::min(rest().size(), mark.size() - 1));
    if (!Fill()) return kNone;
  }
}

// The ">" of the tag that begins at begin_; one inside quote marks does not count.
std::size_t XmlPieces::FindTagEnd() {
  char quote = '\0';
  for (std::size_t at = 1;; ++at) {
    if (at >= rest().size() && !Fill()) return kNone;
    const char c = rest()[at];
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return at;
    }
  }
}

// Passes over all up to the end of the mark.
bool XmlPieces::Skip(std::string_view mark) {
  const std::size_t at = Find(mark, 0);
  if (at == kNone) return Fail("its XML is broken off");
  begin_ += at + mark.size();
  return true;
}

bool XmlPieces::TakePiece(std::size_t tagEnd, std::string_view name, std::string& piece) {
  std::size_t end = tagEnd;
  if (rest()[tagEnd - 1] != '/') {
    const std::string closing = "</" + std::string(name);
    for (std::size_t from = tagEnd;; from = end) {
      end = Find(closing, from);
      if (end == kNone) return Fail("its XML is broken off, or a part of it is too long");
      end += closing.size();
      if (end >= rest().size() && !Fill()) return Fail("its XML is broken off");
      if (kNameEnds.find(rest()[end]) != std::string_view::npos) break;
    }
    end = Find(">", end);
    if (end == kNone) return Fail("its XML is broken off");
  }
  piece.assign(rest().substr(0, end + 1));
  begin_ += end + 1;
  return true;
}

bool XmlPieces::Next(std::string& piece) {
  while (fault_.empty()) {
    const std::size_t at = Find("<", 0);
    if (at == kNone) return rootEnded_ ? false : Fail("its XML is broken off");
    begin_ += at;
    if (!Has(2)) return Fail("its XML is broken off");
    if (rest()[1] == '?') {
      if (!Skip("?>")) return false;
      continue;
    }
    if (rest()[1] == '!') {
      if (!Has(4)) return Fail("its XML is broken off");
      const bool cdata = rest()[2] == '[', comment = rest().substr(2, 2) == "--";
      if (!cdata && !comment) return Fail("its XML has a definition of its own, which is not read");
      if (!Skip(cdata ? "]]>" : "-->")) return false;
      continue;
    }
    const std::size_t tagEnd = FindTagEnd();
    if (tagEnd == kNone) return Fail("its XML is broken off");
    const bool closing = rest()[1] == '/';
    const std::string_view tag = rest().substr(closing ? 2 : 1, tagEnd);
    const std::string name(tag.substr(0, tag.find_first_of(kNameEnds)));
    const bool first = root_.empty();
    if (first) root_ = name;
    if (name == root_ && (closing || (first && rest()[tagEnd - 1] == '/'))) rootEnded_ = true;
    if (!closing && LocalName(name) == element_) return TakePiece(tagEnd, name, piece);
    begin_ += tagEnd + 1;
  }
  return false;
}

}  // namespace flanks
