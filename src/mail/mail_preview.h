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

/// The reservations of a day that stand, in order of time; none when the database does not answer.
std::vector<PreviewRow> ReservationsOfDay(CKovaDBSys* db, std::string_view date);

/// `mailTemplate` as it stands in the editor, filled for a reservation. A patient who is missing leaves its
/// placeholders empty.
FilledMail PreviewFor(const MailTemplate& mailTemplate, TemplateRole role, CKovaDBSys* db,
                      const tagRESERVATION& reservation, const std::tm& now);

/// The same for a made-up patient and reservation, where there is no database to choose one from.
FilledMail PreviewForExample(const MailTemplate& mailTemplate, TemplateRole role, const std::tm& now);

/// The day (YYYYMMDD) that lies `days` after `date`; `date` itself when it is no date.
std::string DayAfter(std::string_view date, int days);

}  // namespace kova::mail
