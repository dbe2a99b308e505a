#include "Velmora/Online/CommunityViews/ServiceText.h"

#include <QList>
#include <QStringView>
#include <QTextBoundaryFinder>

namespace velmora {

namespace {

constexpr int mostMarks = 4;           // on one letter
constexpr std::size_t widestUnit = 4;  // bytes of UTF-8 for what is one or two UTF-16 units

/// Reads on after a bounded start, so that a text of megabytes costs no more than a long one.
struct Start {
  Start(const std::string& utf8, int longest)
      : text(QString::fromStdString(utf8.substr(0, widestUnit * static_cast<std::size_t>(longest)))),
        isWhole(utf8.size() <= widestUnit * static_cast<std::size_t>(longest)) {}

  QString text;
  bool isWhole;
};

class Cleaner {
 public:
  explicit Cleaner(bool keepsLines) : keepsLines_(keepsLines) {}

  QString clean(const QString& text) {
    clean_.reserve(text.size());
    for (const char32_t character : QStringView(text).toUcs4()) add(character);
    return clean_.trimmed();
  }

 private:
  void add(char32_t character) {
    constexpr char32_t nonJoiner = 0x200C;
    constexpr char32_t joiner = 0x200D;
    switch (QChar::category(character)) {
      case QChar::Separator_Space:
        return addGap(u' ');
      case QChar::Separator_Line:
      case QChar::Separator_Paragraph:
      case QChar::Other_Control:
        return addGap(keepsLines_ && character != U'\t' ? u'\n' : u' ');
      case QChar::Other_Format:
        if (character == nonJoiner || character == joiner) append(character);
        return;
      case QChar::Other_Surrogate:
        return;
      case QChar::Mark_NonSpacing:
      case QChar::Mark_Enclosing:
        if (++marks_ <= mostMarks) append(character);
        return;
      default:
        marks_ = 0;
        append(character);
    }
  }

  void addGap(char16_t gap) {
    marks_ = 0;
    while (clean_.endsWith(u' ')) clean_.chop(1);
    if (!clean_.isEmpty() && !clean_.endsWith(u'\n')) clean_.append(gap);
  }

  void append(char32_t character) { clean_.append(QStringView(QChar::fromUcs4(character))); }

  const bool keepsLines_;
  QString clean_;
  int marks_ = 0;
};

QString cleaned(const std::string& utf8, int longest, bool keepsLines) {
  const Start start(utf8, longest);
  QString text = Cleaner(keepsLines).clean(start.text);
  if (start.isWhole && text.size() <= longest) return text;
  text.truncate(longest - 1);
  if (!text.isEmpty() && text.back().isHighSurrogate()) text.chop(1);
  return text + u'…';
}

}  // namespace

QString ServiceText::line(const std::string& utf8, int longest) { return cleaned(utf8, longest, false); }

QString ServiceText::paragraph(const std::string& utf8, int longest) { return cleaned(utf8, longest, true); }

QString ServiceText::handle(const std::string& utf8) { return "@" + line(utf8, longestHandle); }

bool holdsAtMost(int count, const QString& text) {
  if (text.size() <= count) return true;
  QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
  for (int n = 0; n < count; ++n) {
    if (characters.toNextBoundary() < 0) return true;
  }
  return characters.position() == text.size();
}

QString menuText(QString text) { return text.replace('&', "&&"); }

}  // namespace velmora
