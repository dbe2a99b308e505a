#pragma once

#include <QString>
#include <string>

namespace velmora {

/// Texts that came from other people, made fit to be shown as plain text: without control characters, without
/// marks that turn the direction of what follows, with no more than a few accents on one letter, and cut with
/// an ellipsis after `longest` UTF-16 units.
struct ServiceText {
  static constexpr int longestName = 160;  ///< titles, names and states
  static constexpr int longestHandle = 24;
  static constexpr int longestText = 600;

  /// On one line.
  static QString line(const std::string& utf8, int longest = longestName);
  /// Keeps its line breaks, empty lines apart.
  static QString paragraph(const std::string& utf8, int longest = longestText);
  /// "@" and the handle.
  static QString handle(const std::string& utf8);
};

/// Whether the text has at most so many characters as a reader counts them: a letter with its accents, or an
/// emoji of several parts, is one.
bool holdsAtMost(int count, const QString& text);

/// The text of a menu's entry, whose ampersands are no shortcuts.
QString menuText(QString text);

}  // namespace velmora
