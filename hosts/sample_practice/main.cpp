// sample_practice: lays out a made-up practice with two years of work, the same one for the same seed and
// day.

#include <string>
#include <vector>

#include "entry/kova_sub_tools.h"
#include "hosts/console/console.h"
#include "hosts/console/practice.h"
#include "hosts/sample_practice/masters.h"
#include "hosts/sample_practice/patients.h"
#include "hosts/sample_practice/plan.h"
#include "hosts/sample_practice/settings_files.h"
#include "hosts/sample_practice/visits.h"
#include "platform/recordstore/administration.h"
#include "platform/text932/cp932.h"

namespace kova::sample {
namespace {

constexpr const char* kUsage =
    "usage: sample_practice FOLDER [--seed N] [--patients N] [--reservations N] [--today YYYYMMDD] [--large]";

struct Request {
  std::string folder;  // UTF-8
  Options options;
};

Request Parse(const std::vector<std::string>& arguments) {
  Request request;
  request.options.today = Today();
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--large") {
      request.options.patients = 100000;
      request.options.reservations = 1000000;
    } else if (argument.starts_with("--")) {
      if (i + 1 == arguments.size()) throw hosts::UsageError(kUsage);
      const std::string& value = arguments[++i];
      const auto number = [&](long long most) { return hosts::NumberArgument(value, argument, 1, most); };
      if (argument == "--seed") {
        request.options.seed = static_cast<std::uint64_t>(number(INT64_MAX));
      } else if (argument == "--patients") {
        request.options.patients = static_cast<int>(number(10000000));
      } else if (argument == "--reservations") {
        request.options.reservations = static_cast<int>(number(10000000));
      } else if (argument == "--today") {
        request.options.today = DayOf(value);
        // Some years of history must fit behind it.
        if (request.options.today < DayOf("19900101")) throw hosts::UsageError("--today: no usable date");
      } else {
        throw hosts::UsageError(kUsage);
      }
    } else if (request.folder.empty()) {
      request.folder = argument;
    } else {
      throw hosts::UsageError(kUsage);
    }
  }
  if (request.folder.empty()) throw hosts::UsageError(kUsage);
  return request;
}

int Main(const std::vector<std::string>& arguments) {
  const Request request = Parse(arguments);
  // As the profile names it: absolute, code page 932, with its delimiter.
  const std::string folder = hosts::TextArgument(hosts::AbsoluteName(request.folder + "/"), "the folder");
  const int created = KovaCreateDatabase(folder.c_str());
  if (created != 0)
    throw hosts::UsageError("cannot lay out a database there: result " + hosts::DescribeResult(created));
  WriteSettings(folder);
  const std::string templates = CKovaSubTools::GetInstallFolder().GetString() + std::string("templates\\");
  if (!CopyTemplates(templates, folder))
    hosts::PrintError("sample_practice: no mail templates in " + text932::ToUtf8(templates) + "\n");
  hosts::Practice practice;
  practice.UseProfile(request.folder + "/app.ini");
  CKovaDBSys& db = practice.Database();
  Random random(request.options.seed);
  const Plan plan = MakePlan(request.options, random);
  WriteMasters(db, plan.units);
  WritePatients(db, plan, request.options.today, random);
  WriteVisits(db, plan, random);
  hosts::Print(std::to_string(plan.joined.size()) + " patients, " + std::to_string(plan.appointments.size()) +
               " reservations, " + std::to_string(plan.units) + " units\n");
  return 0;
}

}  // namespace
}  // namespace kova::sample

int main(int argc, char** argv) {
  return kova::hosts::RunConsole("sample_practice", argc, argv, kova::sample::Main);
}
