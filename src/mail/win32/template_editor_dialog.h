#pragma once

// "メール用テンプレートの設定": the editor of the practice's mail templates.

#include <optional>
#include <string>

#include "mail/placeholders.h"
#include "mail/template_editor.h"
#include "platform/recordstore/kovadbcall.h"
#include "window/dialog.h"
#include "window/message_prompts.h"

namespace kova::mail {

class TemplateEditorDialog final : public window::Dialog {
 public:
  enum Id {
    kNameLabel = 100,
    kName,
    kNew,
    kDelete,
    kTree,
    kSubjectLabel,
    kSubject,
    kBodyLabel,
    kBody,
    kUndo,
    kPreview,
    kPlaceholderHead,
    kPlaceholders = 200,  // ten buttons in the order of ButtonOrder
    kUnusedPlaceholder = kPlaceholders + static_cast<int>(kPlaceholderCount),
    kMeanings = 250,  // what each of them stands for
  };

  struct Desk {
    TemplateStore& store;
    foundation::SettingsStore& settings;
    CKovaDBSys* db;  // for the preview's reservations; null for made-up ones
  };

  /// All must outlive the dialog.
  TemplateEditorDialog(const Desk& desk, TemplateRole role);

  /// Runs it; the chosen template when it was closed with OK.
  std::optional<int> Run(HWND parent);

 private:
  void AddControls() override;
  window::Box Arrange() const override;
  void OnStart() override;
  void OnCommand(int control, int notification) override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  void OnOk() override;

  void OnName(int notification);
  void SelectShownItem();
  void OpenTree();
  void OpenPreview();
  void InsertPlaceholder(int index);
  bool TakeShown(MailTemplate& shown);
  void Show();

  Desk desk_;
  TemplateRole role_;
  window::DialogPrompts prompts_{*this};
  TemplateEditor editor_;
  std::vector<NamedTemplate> listed_;  // what the name box holds
  std::wstring shownName_;  // what its field shows: a selection changes it before it is asked about
  std::optional<int> chosen_;
};

}  // namespace kova::mail
