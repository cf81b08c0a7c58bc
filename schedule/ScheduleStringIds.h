// Ids of the date series' texts in the library's string table (resources/vantrel.rc), each in
// English, German and Polish. The failure texts take the source's base name and line as "§1 §2!d!".
#pragma once

enum : unsigned long {
    IDS_VTR_SCHEDULE_NEGATIVE = 56, // duration text of a date that ends before it begins
    IDS_VTR_SCHEDULE_NEGATIVE_DURATION = 57,
    IDS_VTR_SCHEDULE_OVERLAP = 58,
    IDS_VTR_SCHEDULE_MAX_DATE = 61,
};
