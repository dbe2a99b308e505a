#include "Velmora/Online/CommunityViews/CommunityReportView.h"

#include <array>

#include "Velmora/Online/CommunityViews/ServiceText.h"

namespace velmora {

namespace {

struct Reason {
  const char* label;
  const char* value;
};

constexpr std::array<Reason, 5> reasons{{{"Harassment or hateful content", "abuse"},
                                         {"Copyright or ownership", "copyright"},
                                         {"Unsafe or explicit content", "unsafe"},
                                         {"Spam or impersonation", "spam"},
                                         {"Something else", "other"}}};

}  // namespace

CommunityReportView::CommunityReportView(CommunityStore& store, const CommunityPost& post, QWidget* parent)
    : Sheet("Report " + ServiceText::handle(post.creator.handle), parent),
      store_(store),
      postID_(post.id),
      creatorID_(post.creator.id),
      send_(addToolbarButton(new TallButton("Send report", {}, {.fill = TallButton::Fill::accent}),
                             "report.send")),
      listener_([this] { refresh(); }, store.isBusy) {
  setObjectName("report");
  setMinimumWidth(460);
  TallButton& cancel = addLeadingButton(new TallButton("Cancel"), "report.cancel");
  aboutCreator_.setObjectName("report.creator");
  reason_.setObjectName("report.reason");
  for (const Reason& reason : reasons) reason_.addItem(reason.label, reason.value);
  details_.setObjectName("report.details");
  content().setSpacing(12);
  content().addWidget(makeLabel("Your report goes privately to the moderator.", Theme::Text::body));
  content().addWidget(&aboutCreator_);
  content().addWidget(makeLabeled("Reason", reason_));
  content().addWidget(makeLabeled("What should we know?", details_));
  content().addStretch(1);
  connect(&cancel, &QAbstractButton::clicked, this, &QDialog::reject);
  connect(&send_, &QAbstractButton::clicked, this, [this] { send(); });
  connect(&details_, &QPlainTextEdit::textChanged, this, [this] { refresh(); });
  refresh();
  details_.setFocus();
}

void CommunityReportView::send() {
  store_.sendReport({.creatorID = creatorID_,
                     .postID = aboutCreator_.isChecked() ? std::nullopt : std::optional(postID_),
                     .reason = reason_.currentData().toString().toStdString(),
                     .details = details_.toPlainText().toStdString()});
  accept();
}

void CommunityReportView::refresh() {
  send_.setEnabled(!store_.isBusy() && holdsAtMost(mostDetails, details_.toPlainText()));
}

}  // namespace velmora
