#pragma once

// Stand-in for the part of MFC's afxcmn.h that stands in exported signatures; see afx.h.

#include "afxwin.h"

/// A list view; here only its handle.
class CListCtrl : public CWnd {};
