#pragma once

// Numbers of the patient list's window, shared with patient_list.rc.

#define IDD_PATIENTS 110

#define IDC_PATIENTS 1101
#define IDC_COLUMNS 1102
