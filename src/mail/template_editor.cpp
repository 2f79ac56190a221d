#include "mail/template_editor.h"

#include <algorithm>

#include "foundation/number_text.h"
#include "mail/placeholders.h"

namespace kova::mail {
namespace {

using os::FileOutcome;

constexpr std::string_view kAskDelete = "表示中のテンプレートを削除してもよろしいですか？";
constexpr std::string_view kAskStore = "変更した内容を保存しますか？";
constexpr std::string_view kAskUnknown = "次の語は置き換えられません。このまま保存しますか？\n\n";
constexpr std::string_view kNameTaken = "指定されたテンプレート名は既に存在しています。";
constexpr std::string_view kNotRead = "テンプレートを読み込めませんでした。";
constexpr std::string_view kNotStored = "テンプレートを保存できませんでした。";
constexpr std::string_view kNotDeleted = "テンプレートを削除できませんでした。";
constexpr std::string_view kNotChosen = "使用するテンプレートを設定に保存できませんでした。";

bool IsListed(const std::vector<NamedTemplate>& list, std::string_view name) {
  return std::any_of(list.begin(), list.end(), [&](const NamedTemplate& each) { return each.name == name; });
}

std::string FreeName(const std::vector<NamedTemplate>& list) {
  const std::string base = "新しいテンプレート";
  std::string name = base;
  for (int count = 2; IsListed(list, name); ++count) name = base + " (" + std::to_string(count) + ")";
  return name;
}

}  // namespace

TemplateEditor::TemplateEditor(TemplateStore& store, foundation::SettingsStore& settings,
                               foundation::Prompts& prompts, TemplateRole role)
    : store_(store), settings_(settings), prompts_(prompts), role_(role) {}

void TemplateEditor::Open() {
  Show(0, {}, false);
  state_.list = store_.List();
  if (role_ == TemplateRole::kPick) {
    BeginNew();
    return;
  }
  state_.number = foundation::ReadInteger(ChosenTemplate(settings_.Open(), role_));
  const FileOutcome loaded = Load(state_.number);
  unreadable_ = loaded != FileOutcome::kOk && loaded != FileOutcome::kNotThere;
  if (unreadable_) prompts_.Inform(kNotRead);
}

FileOutcome TemplateEditor::Load(int number) {
  MailTemplate read;
  const FileOutcome outcome = store_.Read(number, read);
  if (outcome == FileOutcome::kOk) Show(number, std::move(read), false);
  return outcome;
}

void TemplateEditor::BeginNew() {
  std::string name = FreeName(state_.list);
  Show(store_.NextNumber(), {std::move(name), "", ""}, true);
}

void TemplateEditor::Show(int number, MailTemplate fields, bool isNew) {
  state_.number = number;
  state_.fields = std::move(fields);
  state_.isNew = isNew;
  loaded_ = state_.fields;
  unreadable_ = false;
}

void TemplateEditor::New(const MailTemplate& shown) {
  if (OfferToStore(shown)) BeginNew();
}

bool TemplateEditor::Delete() {
  if (!prompts_.AskYesNo(kAskDelete)) return false;
  const FileOutcome deleted = store_.Delete(state_.number);
  if (deleted != FileOutcome::kOk && deleted != FileOutcome::kNotThere) {
    prompts_.Inform(kNotDeleted);
    return false;
  }
  state_.list = store_.List();
  for (const NamedTemplate& each : state_.list) {
    if (Load(each.number) == FileOutcome::kOk) return true;
  }
  BeginNew();
  return true;
}

bool TemplateEditor::Select(int number, const MailTemplate& shown) {
  if (!OfferToStore(shown)) return false;
  if (Load(number) == FileOutcome::kOk) return true;
  prompts_.Inform(kNotRead);
  return false;
}

bool TemplateEditor::OfferToStore(const MailTemplate& shown) {
  state_.fields = shown;
  if (shown == loaded_ || !prompts_.AskYesNo(kAskStore)) return true;
  if (!CheckAndSave(shown)) return false;
  if (state_.fields == loaded_) return true;
  if (!Store()) return false;
  state_.list = store_.List();
  return true;
}

bool TemplateEditor::Store() {
  if (store_.Write(state_.number, state_.fields) != FileOutcome::kOk) {
    prompts_.Inform(kNotStored);
    return false;
  }
  Show(state_.number, std::move(state_.fields), false);
  return true;
}

bool TemplateEditor::CheckAndSave(const MailTemplate& shown) {
  state_.fields = shown;
  if (shown.name == loaded_.name) return true;
  state_.list = store_.List();
  if (IsListed(state_.list, shown.name)) {
    prompts_.Inform(kNameTaken);
    state_.fields.name = loaded_.name;
    return false;
  }
  if (!Store()) return false;
  state_.list = store_.List();
  return true;
}

bool TemplateEditor::AcceptsUnknownWords() {
  std::string words;
  for (const std::string& word : UnknownPlaceholders(state_.fields.subject + "\n" + state_.fields.body))
    words.append(words.empty() ? "" : " ").append(word);
  return words.empty() || prompts_.AskYesNo(std::string(kAskUnknown) + words);
}

std::optional<int> TemplateEditor::Ok(const MailTemplate& shown) {
  state_.fields = shown;
  if (!AcceptsUnknownWords() || !CheckAndSave(shown)) return std::nullopt;
  const bool leaveAlone = unreadable_ && state_.fields == loaded_;
  if (!leaveAlone && !Store()) return std::nullopt;
  if (role_ == TemplateRole::kPick) return state_.number;
  const std::string number = NumberText(state_.number);
  if (settings_.SetString(kMailSection, SettingsKeyOf(role_), number) == FileOutcome::kOk)
    return state_.number;
  prompts_.Inform(kNotChosen);
  return std::nullopt;
}

}  // namespace kova::mail
