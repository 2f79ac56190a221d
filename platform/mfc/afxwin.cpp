#include "afxwin.h"

#include "platform/os/application_profile.h"

namespace {

CWinApp* theApp = nullptr;

kova::os::IniApplicationProfile ProfileOf(const CWinApp& app) {
  return {kova::os::RealFiles(), app.m_pszProfileName == nullptr ? "" : app.m_pszProfileName};
}

}  // namespace

CWinApp::CWinApp() { theApp = this; }

CWinApp::~CWinApp() {
  if (theApp == this) theApp = nullptr;
}

CString CWinApp::GetProfileString(const char* section, const char* key, const char* defaultValue) {
  return ProfileOf(*this).GetString(section, key, defaultValue == nullptr ? "" : defaultValue).c_str();
}

unsigned CWinApp::GetProfileInt(const char* section, const char* key, int defaultValue) {
  return static_cast<unsigned>(ProfileOf(*this).GetInt(section, key, defaultValue));
}

int CWinApp::WriteProfileString(const char* section, const char* key, const char* value) {
  return ProfileOf(*this).WriteString(section, key, value == nullptr ? "" : value) ? 1 : 0;
}

int CWinApp::WriteProfileInt(const char* section, const char* key, int value) {
  return ProfileOf(*this).WriteInt(section, key, value) ? 1 : 0;
}

CWinApp* AfxGetApp() { return theApp; }
