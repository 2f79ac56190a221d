#include "mail/template_editor.h"

#include <gtest/gtest.h>

#include "platform/os/testing/fake_files.h"

namespace kova::mail {
namespace {

using os::testing::FakeStep;

// Answers in the order given; one that was not expected is a failure.
class ScriptedPrompts final : public foundation::Prompts {
 public:
  bool AskYesNo(std::string_view text) override {
    told.emplace_back(text);
    EXPECT_FALSE(answers.empty()) << text;
    const bool yes = answers.starts_with('y');
    answers.erase(0, 1);
    return yes;
  }
  void Inform(std::string_view text) override { told.emplace_back(text); }

  std::string answers;  // 'y' and 'n'
  std::vector<std::string> told;
};

// Templates 1 and 6 in a practice whose index stands at 6; the visited notice is edited.
class TemplateEditorTest : public ::testing::Test {
 protected:
  TemplateEditorTest() {
    profile.values["GLOBAL/DATABASE"] = "D:\\";
    files.folders = {"D:", "D:\\templates"};
    files.contents["D:\\templates\\$mt.index"] = "6";
    EXPECT_EQ(store.Write(1, {"予約", "s1", "b1"}), os::FileOutcome::kOk);
    EXPECT_EQ(store.Write(6, {"来院", "s6", "b6"}), os::FileOutcome::kOk);
    editor.Open();
  }
  ~TemplateEditorTest() override { EXPECT_EQ(prompts.answers, ""); }

  std::string Stored(int number) {
    MailTemplate read;
    return store.Read(number, read) == os::FileOutcome::kOk ? read.name + "|" + read.subject + "|" + read.body
                                                            : "-";
  }
  std::string Shown(const TemplateEditor& from) const {
    const auto& [list, number, fields, isNew] = from.Shown();
    return std::to_string(number) + (isNew ? "*|" : "|") + fields.name + "|" + fields.subject + "|" +
           fields.body;
  }
  std::string Chosen(std::string_view key) { return settings.Open().GetString("EMail", key, "none"); }

  os::testing::FakeFiles files;
  os::testing::FakeProfile profile;
  foundation::SettingsStore settings{profile, files};
  TemplateStore store{files, "D:\\templates\\"};
  ScriptedPrompts prompts;
  TemplateEditor editor{store, settings, prompts, TemplateRole::kCome};
};

TEST_F(TemplateEditorTest, OpensTheRolesOwn) {
  EXPECT_EQ(Shown(editor), "6|来院|s6|b6");
  EXPECT_EQ(editor.Shown().list.size(), 2u);
  TemplateEditor finished(store, settings, prompts, TemplateRole::kTreatmentFinished);
  finished.Open();  // 7 has no file
  EXPECT_EQ(Shown(finished), "7|||");
  EXPECT_EQ(finished.Ok({"終了", "s", "b"}), 7);
  EXPECT_EQ(Stored(7), "終了|s|b");
  EXPECT_TRUE(prompts.told.empty());
}

TEST_F(TemplateEditorTest, NewOnesTakeANumberEachAndAFreeName) {
  editor.New(editor.Shown().fields);
  editor.New(editor.Shown().fields);
  EXPECT_EQ(Shown(editor), "8*|新しいテンプレート||");
  EXPECT_EQ(Stored(8), "-");
  EXPECT_EQ(editor.Ok(editor.Shown().fields), 8);
  EXPECT_EQ(Chosen("ComeTemplate"), "0008");
  TemplateEditor pick(store, settings, prompts, TemplateRole::kPick);
  pick.Open();
  EXPECT_EQ(Shown(pick), "9*|新しいテンプレート (2)||");
  EXPECT_EQ(pick.Ok({"別名", "s", "b"}), 9);
  EXPECT_EQ(Stored(9), "別名|s|b");
  EXPECT_EQ(Chosen("ComeTemplate"), "0008");
}

TEST_F(TemplateEditorTest, RenamingNeedsAFreeName) {
  EXPECT_EQ(editor.Ok({"予約", "new", "new"}), std::nullopt);
  EXPECT_EQ(prompts.told, std::vector<std::string>{"指定されたテンプレート名は既に存在しています。"});
  EXPECT_EQ(Shown(editor), "6|来院|new|new");
  EXPECT_EQ(Stored(6), "来院|s6|b6");
  EXPECT_TRUE(editor.CheckAndSave({"来院2", "s", "b"}));
  EXPECT_EQ(Stored(6), "来院2|s|b");
  EXPECT_TRUE(editor.CheckAndSave({"来院2", "s", "changed"}));  // the same name: nothing is written yet
  EXPECT_EQ(Stored(6), "来院2|s|b");
  EXPECT_EQ(Chosen("ComeTemplate"), "none");
}

TEST_F(TemplateEditorTest, ChangesAreOfferedToBeStored) {
  const MailTemplate changed{"来院", "s6", "changed"};
  prompts.answers = "n";
  EXPECT_TRUE(editor.Select(1, changed));
  EXPECT_EQ(Shown(editor), "1|予約|s1|b1");
  EXPECT_EQ(Stored(6), "来院|s6|b6");
  EXPECT_TRUE(editor.Select(6, editor.Shown().fields));

  prompts.answers = "yyy";
  EXPECT_FALSE(editor.Select(1, {"予約", "s6", "changed"}));  // the name is taken
  EXPECT_EQ(Shown(editor), "6|来院|s6|changed");
  files.failing = FakeStep::kRename;
  editor.New(changed);
  EXPECT_EQ(Shown(editor), "6|来院|s6|changed");
  EXPECT_EQ(prompts.told.back(), "テンプレートを保存できませんでした。");
  files.failing = {};
  EXPECT_TRUE(editor.Select(1, changed));
  EXPECT_EQ(Stored(6), "来院|s6|changed");
  EXPECT_EQ(Chosen("ComeTemplate"), "none");
}

TEST_F(TemplateEditorTest, Deleting) {
  prompts.answers = "nyyyy";
  EXPECT_FALSE(editor.Delete());
  files.failing = FakeStep::kDelete;
  EXPECT_FALSE(editor.Delete());
  EXPECT_EQ(prompts.told.back(), "テンプレートを削除できませんでした。");
  files.failing = {};
  EXPECT_TRUE(editor.Delete());
  EXPECT_EQ(Shown(editor), "1|予約|s1|b1");
  EXPECT_TRUE(editor.Delete());  // the last one
  EXPECT_EQ(Shown(editor), "7*|新しいテンプレート||");
  EXPECT_TRUE(editor.Delete());  // one that was never stored
  EXPECT_EQ(Shown(editor), "8*|新しいテンプレート||");
}

TEST_F(TemplateEditorTest, AFailedWriteKeepsTheWindowAndTheSetting) {
  files.failing = FakeStep::kWrite;
  EXPECT_EQ(editor.Ok({"来院", "s", "b"}), std::nullopt);
  files.failing = {};
  EXPECT_EQ(Chosen("ComeTemplate"), "none");
  profile.values.erase("GLOBAL/DATABASE");  // the template can be written, the setting not
  EXPECT_EQ(editor.Ok({"来院", "s", "b"}), std::nullopt);
  EXPECT_EQ(Stored(6), "来院|s|b");
  EXPECT_EQ(prompts.told.size(), 2u);
}

TEST_F(TemplateEditorTest, UnknownWordsAreAskedAbout) {
  const MailTemplate odd{"来院", "$_NAME様 $_PNAME", "$_X $_NAME $_PNAMES $_表"};
  prompts.answers = "ny";
  EXPECT_EQ(editor.Ok(odd), std::nullopt);
  EXPECT_EQ(Stored(6), "来院|s6|b6");
  EXPECT_EQ(prompts.told.back(), "次の語は置き換えられません。このまま保存しますか？\n\n$_NAME $_X");
  EXPECT_EQ(editor.Ok(odd), 6);
}

TEST_F(TemplateEditorTest, ADamagedOneIsOverwrittenByTypedTextsOnly) {
  files.contents["D:\\templates\\0006.$mt"] = "\1";
  editor.Open();
  EXPECT_EQ(prompts.told.back(), "テンプレートを読み込めませんでした。");
  EXPECT_EQ(editor.Shown().list.size(), 1u);
  EXPECT_EQ(editor.Ok(editor.Shown().fields), 6);
  EXPECT_EQ(files.contents["D:\\templates\\0006.$mt"], "\1");
  EXPECT_EQ(editor.Ok({"来院", "", ""}), 6);
  EXPECT_EQ(Stored(6), "来院||");
}

}  // namespace
}  // namespace kova::mail
