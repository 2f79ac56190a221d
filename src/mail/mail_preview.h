#pragma once

// A template filled as it would be sent, before it is stored or sent.

#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "mail/reservation_mail.h"
#include "mail/template_roles.h"
#include "mail/template_store.h"

namespace kova::mail {

/// A reservation that a preview can be made for.
struct PreviewRow {
  tagRESERVATION reservation{};
  std::string patientName;  // empty when the patient is not there
};

/// The reservations of a day that take place, in order of time. 0, also for none, else the record store's result; there
/// are none in `rows` then.
[[nodiscard]] int ReservationsOfDay(CKovaDBSys* db, std::string_view date, std::vector<PreviewRow>& rows);

/// `mailTemplate` as it stands in the editor, filled for a reservation, in `mail`. A patient who is missing leaves its
/// placeholders empty. 0, else the record store's result; `mail` is empty then.
[[nodiscard]] int PreviewFor(const MailTemplate& mailTemplate, TemplateRole role, CKovaDBSys* db,
                             const tagRESERVATION& reservation, const std::tm& now, FilledMail& mail);

/// The same for a made-up patient and reservation, where there is no database to choose one from.
FilledMail PreviewForExample(const MailTemplate& mailTemplate, TemplateRole role, const std::tm& now);

/// The day (YYYYMMDD) that lies `days` after `date`; `date` itself when it is no date.
std::string DayAfter(std::string_view date, int days);

}  // namespace kova::mail
