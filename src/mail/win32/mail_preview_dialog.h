#pragma once

// A template filled for a reservation of the day that is looked at, before it is stored.

#include <ctime>
#include <string>
#include <vector>

#include "mail/mail_preview.h"
#include "window/dialog.h"
#include "window/virtual_list.h"

namespace kova::mail {

class MailPreviewDialog final : public window::Dialog {
 public:
  enum Id {
    kDayBefore = 100,
    kDay,
    kDayAfter,
    kReservationsLabel,
    kReservations,
    kToLabel,
    kTo,
    kSubjectLabel,
    kSubject,
    kBodyLabel,
    kBody,
  };

  /// Without a connection a made-up reservation is shown.
  MailPreviewDialog(MailTemplate shown, TemplateRole role, CKovaDBSys* db, const std::tm& now);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  LRESULT OnNotify(const NMHDR& header) override;

  void ShowDay();
  void ShowMail();
  std::string CellText(int row, int column) const;

  MailTemplate template_;
  TemplateRole role_;
  CKovaDBSys* db_;
  std::tm now_;
  std::string day_;
  std::vector<PreviewRow> rows_;
  int failure_ = 0;  // of reading the day: the record store's result
  window::VirtualList list_;
};

}  // namespace kova::mail
