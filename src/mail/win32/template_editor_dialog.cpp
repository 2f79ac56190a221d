#include "mail/win32/template_editor_dialog.h"

#include <algorithm>

#include "mail/mail_preview.h"
#include "mail/placeholders.h"
#include "mail/win32/mail_preview_dialog.h"
#include "mail/win32/template_tree_dialog.h"
#include "platform/os/clock.h"
#include "window/wide_text.h"

namespace kova::mail {

using window::Box;
using window::Column;
using window::Grid;
using window::Row;
using window::Space;

namespace {

constexpr UINT kSelectShownItem = WM_APP + 1;

// The case number stands here without its "_", as the practices know it; only "$_PCASE" is replaced.
std::string MeaningOf(Placeholder placeholder) {
  const PlaceholderText& text = TextOf(placeholder);
  if (placeholder == Placeholder::kCaseNumber) return "$PCASE：" + std::string(text.meaning);
  return std::string(text.literal) + "：" + std::string(text.meaning);
}

}  // namespace

TemplateEditorDialog::TemplateEditorDialog(const Desk& desk, TemplateRole role)
    : Dialog("メール用テンプレートの設定", {760, 520}),
      desk_(desk),
      role_(role),
      editor_(desk.store, desk.settings, prompts_, role) {}

std::optional<int> TemplateEditorDialog::Run(HWND parent) {
  return RunModal(parent) == IDOK ? chosen_ : std::nullopt;
}

void TemplateEditorDialog::AddControls() {
  AddLabel(kNameLabel, "テンプレート名(&T)");
  AddComboBox(kName, CBS_DROPDOWN);
  AddButton(kNew, "新規(&N)");
  AddButton(kDelete, "削除(&D)");
  AddButton(kTree, "ツリー参照(&R)");
  AddLabel(kSubjectLabel, "メールの件名(&S)");
  AddEdit(kSubject);
  AddLabel(kBodyLabel, "メールの本文(&B)");
  AddTextBox(kBody);
  AddLabel(kPlaceholderHead, "本文への差し込み");
  for (int i = 0; i < static_cast<int>(kPlaceholderCount); ++i) {
    const Placeholder placeholder = ButtonOrder()[static_cast<std::size_t>(i)];
    const std::string key = " (&" + std::to_string((i + 1) % 10) + ")";
    AddButton(kPlaceholders + i, std::string(TextOf(placeholder).literal) + key);
    if (!TextOf(placeholder).meaning.empty()) AddLabel(kMeanings + i, MeaningOf(placeholder));
  }
  // An eleventh button that does nothing has always been part of this window; nobody needs to see it.
  AddButton(kUnusedPlaceholder, "$_BRETIME");
  ShowWindow(Item(kUnusedPlaceholder), SW_HIDE);
  Enable(kUnusedPlaceholder, false);
  AddButton(kUndo, "元に戻す(&U)");
  AddButton(kPreview, "プレビュー(&P)");
  AddOkAndCancel();
}

Box TemplateEditorDialog::Arrange() const {
  const int gap = Dip(8);
  std::vector<std::vector<Box>> placeholders;
  for (int i = 0; i < static_cast<int>(kPlaceholderCount); ++i)
    placeholders.push_back({Natural(kPlaceholders + i), Natural(kMeanings + i)});
  Box body = Column(Dip(4), {Natural(kBodyLabel), AtLeast(kBody, {320, 160}).Stretch()});
  Box words = Column(Dip(4), {Natural(kPlaceholderHead), Grid(gap, Dip(4), std::move(placeholders), 1)});
  Box head =
      Grid(gap, gap,
           {{Natural(kNameLabel),
             Row(gap, {AtLeast(kName, {200, 0}).Stretch(), Natural(kNew), Natural(kDelete), Natural(kTree)})},
            {Natural(kSubjectLabel), Row(0, {Natural(kSubject).Stretch()})}},
           1);
  return Column(Dip(10),
                {std::move(head), Row(Dip(12), {std::move(body).Stretch(), std::move(words)}).Stretch(),
                 Row(gap, {Natural(kUndo), Natural(kPreview), OkAndCancel().Stretch()})})
      .Margin(Dip(12));
}

void TemplateEditorDialog::OnStart() {
  editor_.Open();
  Show();
}

void TemplateEditorDialog::OnCommand(int control, int notification) {
  MailTemplate shown;
  if (control == kName) {
    OnName(notification);
  } else if (control == kBody && notification == EN_CHANGE) {
    Enable(kUndo, SendMessageW(Item(kBody), EM_CANUNDO, 0, 0) != 0);
  } else if (notification != BN_CLICKED) {
    return;
  } else if (control == kNew) {
    if (!TakeShown(shown)) return;
    editor_.New(shown);
    Show();
    Focus(kName);
  } else if (control == kDelete) {
    if (editor_.Delete()) Show();
  } else if (control == kTree) {
    OpenTree();
  } else if (control == kUndo) {
    SendMessageW(Item(kBody), EM_UNDO, 0, 0);
    Focus(kBody);
  } else if (control == kPreview) {
    OpenPreview();
  } else if (control >= kPlaceholders && control < kUnusedPlaceholder) {
    InsertPlaceholder(control - kPlaceholders);
  }
}

void TemplateEditorDialog::OnName(int notification) {
  if (notification == CBN_EDITCHANGE) shownName_ = window::WindowText(Item(kName));
  // The box is still busy with the selection: it is looked at when that is over.
  if (notification == CBN_SELCHANGE || notification == CBN_CLOSEUP)
    PostMessageW(Handle(), kSelectShownItem, 0, 0);
}

bool TemplateEditorDialog::OnMessage(UINT message, WPARAM, LPARAM, LRESULT&) {
  if (message != kSelectShownItem) return false;
  SelectShownItem();
  return true;
}

void TemplateEditorDialog::SelectShownItem() {
  HWND box = Item(kName);
  const LRESULT item = SendMessageW(box, CB_GETCURSEL, 0, 0);
  if (item == CB_ERR || SendMessageW(box, CB_GETDROPPEDSTATE, 0, 0) != 0) return;
  const auto number = static_cast<int>(SendMessageW(box, CB_GETITEMDATA, static_cast<WPARAM>(item), 0));
  if (number == editor_.Shown().number) return;
  SetWindowTextW(box, shownName_.c_str());
  MailTemplate shown;
  if (TakeShown(shown)) (void)editor_.Select(number, shown);
  Show();
}

void TemplateEditorDialog::OpenTree() {
  MailTemplate shown;
  if (!TakeShown(shown)) return;
  const bool saved = editor_.CheckAndSave(shown);
  Show();
  if (!saved) return;
  TemplateTreeDialog tree(desk_.store, editor_.Shown().number);
  const std::optional<int> number = tree.Run(Handle());
  if (!number || *number == editor_.Shown().number) return;
  if (editor_.Select(*number, shown)) Show();
}

void TemplateEditorDialog::OpenPreview() {
  MailTemplate shown;
  if (TakeShown(shown)) MailPreviewDialog(shown, role_, desk_.db, os::LocalTime()).RunModal(Handle());
}

void TemplateEditorDialog::InsertPlaceholder(int index) {
  const std::string_view literal = TextOf(ButtonOrder()[static_cast<std::size_t>(index)]).literal;
  SendMessageW(Item(kBody), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(window::Wide(literal).c_str()));
  // The caret stays behind the word, so that one goes on typing there.
  SetFocus(Item(kBody));
}

void TemplateEditorDialog::OnOk() {
  MailTemplate shown;
  if (!TakeShown(shown)) return;
  chosen_ = editor_.Ok(shown);
  if (chosen_) {
    Close(IDOK);
  } else {
    Show();
  }
}

bool TemplateEditorDialog::TakeShown(MailTemplate& shown) {
  return TakeText(kName, shown.name) && TakeText(kSubject, shown.subject) && TakeText(kBody, shown.body);
}

void TemplateEditorDialog::Show() {
  const TemplateEditor::State& state = editor_.Shown();
  HWND box = Item(kName);
  if (listed_ != state.list) {
    listed_ = state.list;
    SendMessageW(box, WM_SETREDRAW, FALSE, 0);
    SendMessageW(box, CB_RESETCONTENT, 0, 0);
    for (const NamedTemplate& entry : listed_) {
      const LRESULT item =
          SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(window::Wide(entry.name).c_str()));
      SendMessageW(box, CB_SETITEMDATA, static_cast<WPARAM>(item), entry.number);
    }
    SendMessageW(box, WM_SETREDRAW, TRUE, 0);
  }
  const auto at = std::find_if(listed_.begin(), listed_.end(),
                               [&](const NamedTemplate& entry) { return entry.number == state.number; });
  SendMessageW(box, CB_SETCURSEL,
               at == listed_.end() ? static_cast<WPARAM>(-1) : static_cast<WPARAM>(at - listed_.begin()), 0);
  ShowText(kName, state.fields.name);
  shownName_ = window::WindowText(box);
  ShowText(kSubject, state.fields.subject);
  ShowText(kBody, state.fields.body);
  Enable(kUndo, false);
  InvalidateRect(box, nullptr, TRUE);
}

}  // namespace kova::mail
