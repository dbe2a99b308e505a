#pragma once

class QFocusEvent;
class QWidget;

namespace velmora {

/// Whether the keyboard or the mouse leads on a canvas with a cursor.
///
/// The cursor shows from when the keyboard is used until the mouse is. The keys of the transport, Space and
/// Return, are the canvas's only while the focus came by Tab: then its property "keepsActivationKeys" tells
/// the application's key filter so.
class KeyboardLead {
 public:
  explicit KeyboardLead(QWidget& canvas) : canvas_(canvas) {}

  bool showsCursor() const { return showsCursor_; }
  bool cameByTab() const { return cameByTab_; }

  /// The focus has come. False if the window came to the front or a menu closed: then all is as it was.
  bool focusCame(const QFocusEvent& event);
  /// As if Tab had led here.
  void takeByTab() { set(true); }
  void keyUsed() { showsCursor_ = true; }
  void mouseUsed() { set(false); }
  /// While nothing can be edited the transport has its keys.
  void setMayActivate(bool mayActivate);

 private:
  void set(bool cameByTab);
  void tell() const;

  QWidget& canvas_;
  bool showsCursor_ = false;
  bool cameByTab_ = false;
  bool mayActivate_ = true;
};

}  // namespace velmora
