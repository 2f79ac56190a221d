#include "hosts/companions/companion.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <functional>
#include <memory>

#include "hosts/companions/mail_message.h"
#include "platform/os/application_profile.h"
#include "platform/os/clock.h"
#include "platform/os/files.h"
#include "platform/os/paths.h"
#include "platform/os/program.h"
#include "platform/text932/cp932.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace kova::companions {
namespace {

constexpr int kLockPatience = 20000;  // milliseconds; less than the callers wait
constexpr int kMostOfOneSecond = 100000;

std::string CommandLineOf([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
#ifdef _WIN32
  // The runtime's own arguments are split by rules of quotation that these lines do not follow.
  return std::string(BehindProgramName(GetCommandLineA()));
#else
  std::string line;
  for (int i = 1; i < argc; ++i) line.append(i > 1 ? " " : "").append(argv[i]);
  return line;
#endif
}

int Report(std::string_view name, const std::exception& error, int code) {
  std::fprintf(stderr, "%s: %s\n", std::string(name).c_str(), error.what());
  return code;
}

// The suite's folder "Mail", wherever below the suite's own the running program lies.
std::string SuiteMailFolder() { return os::JoinPath(os::ParentFolderOf(os::ProgramFolder()), "Mail\\"); }

std::string Shown(std::string_view text) { return "\"" + text932::ToUtf8(text) + "\""; }

int MinutesFromUtc() {
  const std::time_t now = std::time(nullptr);
  std::tm utc = *std::gmtime(&now);
  utc.tm_isdst = os::LocalTime().tm_isdst;
  return static_cast<int>(std::difftime(now, std::mktime(&utc)) / 60);
}

std::string FileNameText(std::string_view text) {
  std::string safe;
  for (const char c : text.substr(0, 40)) {
    const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
    safe += plain ? c : '_';
  }
  return safe;
}

void Check(os::FileOutcome outcome, const char* what, std::string_view path) {
  if (outcome != os::FileOutcome::kOk) throw CompanionError(std::string(what) + " " + Shown(path));
}

// A new file "date-time[-name]-counter.eml". `content` is asked for what it holds, given the name without
// ".eml".
void KeepNew(const std::string& folder, std::string_view name,
             const std::function<std::string(const std::string& stem)>& content) {
  os::Files& files = os::RealFiles();
  Check(files.MakeFolders(folder), "cannot make the folder", folder);
  std::unique_ptr<os::FileLock> lock;  // mails of one second must not take each other's name
  Check(files.Lock(folder + ".lock", kLockPatience, lock), "others are writing to", folder);
  const std::tm now = os::LocalTime();
  char time[32];
  std::strftime(time, sizeof time, "%Y%m%d-%H%M%S", &now);
  const std::string beginning = time + (name.empty() ? "" : "-" + FileNameText(name));
  for (int counter = 1; counter < kMostOfOneSecond; ++counter) {
    const std::string stem = beginning + "-" + std::to_string(counter);
    const std::string path = folder + stem + ".eml";
    if (files.Kind(path) != os::PathKind::kNothing) continue;
    return Check(files.Replace(path, content(stem), os::Precondition::NoFile()), "cannot write", path);
  }
  throw CompanionError("too many mails in " + Shown(folder));
}

}  // namespace

int RunCompanion(std::string_view name, int argc, char** argv, void (*program)(std::string_view line)) {
  try {
    program(CommandLineOf(argc, argv));
    return 0;
  } catch (const CommandLineError& error) {
    return Report(name, error, kUsageExitCode);
  } catch (const std::exception& error) {
    return Report(name, error, kFailedExitCode);
  }
}

std::string EnvironmentText(const char* name) {
  std::string text;
#ifdef _WIN32
  const std::wstring wideName(name, name + std::char_traits<char>::length(name));
  std::wstring wide(GetEnvironmentVariableW(wideName.c_str(), nullptr, 0), L'\0');
  wide.resize(GetEnvironmentVariableW(wideName.c_str(), wide.data(), static_cast<DWORD>(wide.size())));
  const bool known = text932::FromUtf16(std::u16string(wide.begin(), wide.end()), text);
#else
  const char* utf8 = std::getenv(name);
  const bool known = utf8 != nullptr && text932::FromUtf8(utf8, text);
#endif
  return known ? text : std::string();
}

std::string MailFolder(const char* variable, std::string_view name) {
  const std::string chosen = EnvironmentText(variable);
  return os::AddTrailingDelimiter(chosen.empty() ? SuiteMailFolder().append(name) : chosen);
}

Sender ReadSender() {
  const os::IniApplicationProfile profile(os::RealFiles(), SuiteMailFolder() + "mail.ini");
  const Addresses addresses = ReadAddresses(profile.GetString("Mail", "Address", ""));
  const bool usable = addresses.usable.size() == 1 && addresses.refused.empty();
  return {profile.GetString("Mail", "Sender", ""),
          usable ? addresses.usable.front() : "practice@example.invalid"};
}

void KeepMail(const MailCommand& mail, const Sender& sender, const std::string& folder, Fields fields) {
  const Addresses addresses = ReadAddresses(mail.to);
  if (!addresses.refused.empty())
    throw CompanionError("no usable address: " + Shown(addresses.refused.front()));
  if (addresses.usable.empty()) throw CompanionError("there is no address to send to");
  MailMessage message;
  message.senderName = sender.name;
  message.senderAddress = sender.address;
  message.to = addresses.usable;
  message.subject = mail.subject;
  message.body = mail.body;
  message.fields = {{"X-Patient-ID", std::string(mail.patientId)}, {"X-Staff-ID", std::string(mail.staffId)}};
  message.fields.insert(message.fields.end(), fields.begin(), fields.end());
  message.minutesFromUtc = MinutesFromUtc();
  KeepNew(folder, mail.patientId, [&](const std::string& stem) {
    message.date = os::LocalTime();
    message.id = stem + "." + std::to_string(os::MonotonicMilliseconds());
    return WriteMessage(message);
  });
}

void KeepMessage(std::string_view content, std::string_view name, const std::string& folder) {
  KeepNew(folder, name, [&](const std::string&) { return std::string(content); });
}

}  // namespace kova::companions
