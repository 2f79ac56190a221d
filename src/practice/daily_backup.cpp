#include "practice/daily_backup.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "platform/os/filesystem_path.h"
#include "platform/os/paths.h"
#include "platform/recordstore/administration.h"

namespace kova::practice {
namespace {

constexpr std::string_view kReportFile = "kova.backup";
constexpr std::string_view kLockFile = "kova.backup.lock";
constexpr std::string_view kMarkerFile = "INDEXCONTROL.BTR";
constexpr std::size_t kReportLimit = 1024;
constexpr int kMinutesToNextTry = 60;

std::string DayOf(const std::tm& now) {
  char text[64];
  std::snprintf(text, sizeof text, "%04d%02d%02d", now.tm_year + 1900, now.tm_mon + 1, now.tm_mday);
  return text;
}

int MinuteOf(const std::tm& now) { return now.tm_hour * 60 + now.tm_min; }

void WriteReport(os::Files& files, std::string_view databaseFolder, const std::tm& now, int result,
                 const std::string& words) {
  char line[100];
  std::snprintf(line, sizeof line, "%s %d %d ", DayOf(now).c_str(), MinuteOf(now), result);
  // Without a report the next program tries again.
  (void)files.Replace(os::JoinPath(databaseFolder, kReportFile), line + words + "\r\n");
}

/// True for a name as the backups have: kova-YYYYMMDD-hhmmss.
bool IsBackupName(std::string_view name) {
  constexpr std::string_view kPattern = "kova-00000000-000000";
  if (name.size() != kPattern.size()) return false;
  return std::equal(name.begin(), name.end(), kPattern.begin(), [](char c, char pattern) {
    return pattern == '0' ? c >= '0' && c <= '9' : c == pattern;
  });
}

/// True for what a program left behind that ended, before that day, while it made one.
bool IsLeftOver(std::string_view name, std::string_view day) {
  constexpr std::string_view kPart = ".part";
  if (!name.ends_with(kPart) || !IsBackupName(name.substr(0, name.size() - kPart.size()))) return false;
  return name.substr(std::string_view("kova-").size(), day.size()) < day;
}

void Remove(std::string_view folder, std::string_view name) {
  std::error_code error;  // one that stays is removed the next day
  std::filesystem::remove_all(os::ToFilesystemPath(os::JoinPath(folder, name)), error);
}

/// Nothing but backups, whole ones and those that were never finished, is removed, and none when the folder cannot be read.
void DropOldBackups(os::Files& files, std::string_view backupFolder, const std::string& day) {
  std::vector<std::string> names;
  if (files.ListFolders(backupFolder, names) != os::FileOutcome::kOk) return;
  for (const std::string& name : names) {
    if (IsLeftOver(name, day)) Remove(backupFolder, name);
  }
  std::erase_if(names, [&](const std::string& name) {
    const std::string marker = os::JoinPath(os::JoinPath(backupFolder, name), kMarkerFile);
    return !IsBackupName(name) || files.Kind(marker) != os::PathKind::kFile;
  });
  std::sort(names.begin(), names.end());
  for (std::size_t i = 0; i + kBackupsKept < names.size(); ++i) Remove(backupFolder, names[i]);
}

}  // namespace

std::optional<BackupReport> ReadBackupReport(os::Files& files, std::string_view databaseFolder) {
  std::string content;
  if (files.Read(os::JoinPath(databaseFolder, kReportFile), kReportLimit, content) != os::FileOutcome::kOk)
    return std::nullopt;
  BackupReport report;
  char day[9] = "";
  if (std::sscanf(content.c_str(), "%8[0-9] %d %d", day, &report.minute, &report.result) != 3) return std::nullopt;
  report.day = day;
  return report;
}

bool IsBackupDue(os::Files& files, std::string_view databaseFolder, const std::tm& now) {
  const auto report = ReadBackupReport(files, databaseFolder);
  if (!report || report->day != DayOf(now)) return true;
  return report->result != 0 && MinuteOf(now) - report->minute >= kMinutesToNextTry;
}

int MakeDailyBackup(os::Files& files, std::string_view databaseFolder, std::string_view backupFolder, const std::tm& now,
                    std::string& problem) {
  std::unique_ptr<os::FileLock> lock;
  const os::FileOutcome taken = files.Lock(os::JoinPath(databaseFolder, kLockFile), 0, lock);
  if (taken == os::FileOutcome::kBusy || !IsBackupDue(files, databaseFolder, now)) return 0;
  std::string made;
  const int result = KovaBackUp(std::string(databaseFolder).c_str(), std::string(backupFolder).c_str(), {}, made, problem);
  WriteReport(files, databaseFolder, now, result, result == 0 ? made : problem);
  if (result == 0) DropOldBackups(files, backupFolder, DayOf(now));
  return result;
}

std::string BackupComplaint(os::Files& files, std::string_view databaseFolder, std::string_view backupFolder,
                            const std::tm& now) {
  const auto report = ReadBackupReport(files, databaseFolder);
  if (!report || report->day != DayOf(now) || report->result == 0) return {};
  return "データベースの自動バックアップができませんでした（結果番号 " + std::to_string(report->result) +
         "）。\nバックアップ先：" + std::string(backupFolder) +
         "\n\n外付けディスクなどがつながっているかを確かめてください。1 時間後にもう一度行います。";
}

std::string NoBackupProgramText(std::string_view backupFolder) {
  return "データベースの自動バックアップを始められませんでした。\nバックアップ先：" + std::string(backupFolder) +
         "\n\nプログラム kovacall.exe があるかを、担当者に確かめてください。";
}

}  // namespace kova::practice
