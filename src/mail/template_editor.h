#pragma once

// What the template editor does, without its window: the window shows State() after each call and hands the
// shown texts in.

#include <optional>
#include <string>
#include <vector>

#include "foundation/prompts.h"
#include "foundation/settings_store.h"
#include "mail/template_roles.h"
#include "mail/template_store.h"

namespace kova::mail {

class TemplateEditor {
 public:
  /// What the window shows.
  struct State {
    std::vector<NamedTemplate> list;  // the name box's items
    int number = 0;                   // of the template that is edited
    MailTemplate fields;              // name, subject and body as shown
    bool isNew = false;               // not yet stored
  };

  /// All must outlive this object.
  TemplateEditor(TemplateStore& store, foundation::SettingsStore& settings, foundation::Prompts& prompts,
                 TemplateRole role);

  /// Lists the templates and shows the role's one; in pick mode begins a new one. A template without a file
  /// shows empty texts under its number; one that cannot be read too, which is told.
  void Open();

  const State& Shown() const { return state_; }

  /// Begins a new template: its number is taken now, its file is not yet written. `shown` is what the window
  /// shows; texts that were changed and not stored are offered to be stored first, as in Select.
  void New(const MailTemplate& shown);

  /// Deletes the shown template after asking, and shows the first of the list, or a new one when none is
  /// left. False when nothing was deleted (No, or the file could not be removed, which is told): the window's
  /// texts stay.
  bool Delete();

  /// Shows another template. When the shown texts were changed and not stored, asks whether to store them; on
  /// Yes they are stored as by Ok, but nothing is chosen. False, and the shown texts stay, when they could
  /// not be stored or the other template could not be read, which is told.
  bool Select(int number, const MailTemplate& shown);

  /// Before the tree opens, and first step of OK: a changed name must be free and is stored at once with its
  /// texts. False after telling why; a name that is taken is set back to the loaded one in Shown().
  bool CheckAndSave(const MailTemplate& shown);

  /// Stores everything, the template before the setting that names it; the chosen number when the window may
  /// close, nothing when it stays open. Placeholder words that mean nothing are asked about first. A template
  /// that could not be read is written only when something was entered.
  std::optional<int> Ok(const MailTemplate& shown);

 private:
  os::FileOutcome Load(int number);
  void BeginNew();
  void Show(int number, MailTemplate fields, bool isNew);
  bool OfferToStore(const MailTemplate& shown);
  bool Store();
  bool AcceptsUnknownWords();

  TemplateStore& store_;
  foundation::SettingsStore& settings_;
  foundation::Prompts& prompts_;
  TemplateRole role_;
  State state_;
  MailTemplate loaded_;  // as last loaded or stored; its name is the one that counts as the template's own
  bool unreadable_ = false;  // the shown number has a file that could not be read
};

}  // namespace kova::mail
