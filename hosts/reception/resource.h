#pragma once

// Numbers of the reception's windows, shared with its .rc files: one list, so that none is given twice.

#define IDD_RECEPTION 101
#define IDR_MENU 102
#define IDR_KEYS 103

#define IDD_ADDRESSES 110
#define IDD_PATIENTS 111

#define IDC_DATE 1001
#define IDC_BOARD 1002
#define IDC_PATIENT 1003
#define IDC_QUERY 1004
#define IDC_TYPE 1005
#define IDC_UNIT 1006
#define IDC_DOCTOR 1007
#define IDC_STAFF 1008
#define IDC_TIME 1009
#define IDC_RESERVE 1010
#define IDC_STATUS 1011

#define IDC_POSTAL_CODE 1031
#define IDC_FIND_ADDRESS 1032
#define IDC_ADDRESS 1033
#define IDC_FIND_CODE 1034

#define IDC_PATIENTS 1101
#define IDC_COLUMNS 1102

#define IDM_QUERY_ID 2001
#define IDM_QUERY_KANA 2002
#define IDM_QUERY_NAME 2003
#define IDM_PAYMENT 2004
#define IDM_ADDRESSES 2006
#define IDM_MAP 2007
#define IDM_TEMPLATE_TREE 2010
#define IDM_TEMPLATE 2020  // and the next five: one for each use of a template
#define IDM_RECEIPT 2030
#define IDM_PATIENTS 2040
#define IDM_BIRTH_DATE 2041
#define IDM_DATABASE_FOLDER 2050
#define IDM_MAIL_SETTINGS 2051
#define IDM_RESERVATION_COLUMNS 2052
