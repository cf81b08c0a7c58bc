#pragma once

#define IDD_DEMO_MAIN 100
#define IDC_DEMO_CAPTION 1000
#define IDC_DEMO_LIST 1001
