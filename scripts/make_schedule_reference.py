#!/usr/bin/env python3
"""Random date series records and their begin times, expanded by python-dateutil's rrule.

The Wine test of the date series reads this file, expands every record with the library and
compares the begin times. Only patterns that map exactly onto an RFC 5545 recurrence are written;
the library's own rules where they differ on purpose are tested directly.

Every record keeps its dates clear of the places where the rules part:
  * each date begins and ends on one day, away from midnight, so no date of the first month or
    year runs into the series start (the library clips such a date, a recurrence drops it);
  * no time of day falls into the hour that daylight saving skips or repeats;
  * days 29 to 31 are written as "the last of 28..d" (BYSETPOS=-1), which is the library's cap;
  * the weekend ordinals other than the first and the last are left out;
  * all dates lie before 2038, where the zone's rules are the same in both engines.

Line format (one record per line, '#' lines are comments):
  bPattern bDailyMode wDayInterval bWeekInterval bWeekDays bMonthlyMode bMonthDay bMonthInterval
  bMonthOrdinal bMonthDayKind bYearlyMode bYearDay bYearMonth bYearOrdinal bYearDayKind bEndMode
  wEndCount tStart tEnd tSeriesStart tLimit n begin1 ... beginN
tLimit is the series end for end mode 2 and the event date for end mode 0.
"""

import random
import sys
from datetime import datetime, timedelta

from dateutil import rrule, tz

SEED = 20261123
RECORDS = 3000
ZONE = tz.gettz("Europe/Berlin")
LAST_YEAR = 2037

# wDayOfWeek numbering (0 = Sunday) to dateutil's weekdays (0 = Monday).
WEEKDAYS = [rrule.SU, rrule.MO, rrule.TU, rrule.WE, rrule.TH, rrule.FR, rrule.SA]
KIND_WORKDAY, KIND_WEEKEND, KIND_DAY = 100, 101, 102


def local(y, mo, d, h=0, mi=0, s=0):
    return datetime(y, mo, d, h, mi, s, tzinfo=ZONE)


def stamp(dt):
    return int(dt.timestamp())


def random_time_of_day(rng):
    # Hour 2 is skipped in spring and repeated in autumn.
    hour = rng.choice([h for h in range(0, 22) if h != 2])
    return hour, rng.randrange(60), rng.randrange(60)


def random_day(rng, first_year, last_year):
    start = datetime(first_year, 1, 1)
    span = (datetime(last_year, 12, 31) - start).days
    return start + timedelta(days=rng.randrange(span + 1))


def capped_day(day):
    """A day number capped by the month's length, as a recurrence."""
    if day <= 28:
        return {"bymonthday": day}
    return {"bymonthday": list(range(28, day + 1)), "bysetpos": -1}


def ordinal_day(ordinal, kind):
    """The ordinal day of a kind within a month, as a recurrence; None where the rules part."""
    last = ordinal > 3
    n = -1 if last else ordinal + 1
    if kind <= 6:
        return {"byweekday": WEEKDAYS[kind](n)}
    if kind == KIND_DAY:
        return {"bymonthday": n}
    if kind == KIND_WORKDAY:
        return {"byweekday": WEEKDAYS[1:7], "bysetpos": n}
    if kind == KIND_WEEKEND and (last or ordinal == 0):
        return {"byweekday": [rrule.SA, rrule.SU], "bysetpos": n}
    return None


def random_ordinal(rng):
    return rng.choice([0, 1, 2, 3, 255, rng.randrange(4, 255)])


def random_kind(rng, ordinal):
    kinds = list(range(7)) + [KIND_WORKDAY, KIND_DAY]
    if ordinal == 0 or ordinal > 3:
        kinds.append(KIND_WEEKEND)
    return rng.choice(kinds)


def make_record(rng):
    rec = dict(bPattern=rng.randrange(4), bDailyMode=0, wDayInterval=1, bWeekInterval=1, bWeekDays=0,
               bMonthlyMode=0, bMonthDay=1, bMonthInterval=1, bMonthOrdinal=0, bMonthDayKind=0,
               bYearlyMode=0, bYearDay=1, bYearMonth=0, bYearOrdinal=0, bYearDayKind=0)
    rule = {}
    pattern = rec["bPattern"]
    if pattern == 0:
        rec["bDailyMode"] = rng.randrange(3)
        if rec["bDailyMode"] == 0:
            rec["wDayInterval"] = rng.choice([1, 1, 2, 3, rng.randrange(1, 40)])
            rule = dict(freq=rrule.DAILY, interval=rec["wDayInterval"])
        elif rec["bDailyMode"] == 1:
            rule = dict(freq=rrule.DAILY, byweekday=WEEKDAYS[1:6])
        else:
            rule = dict(freq=rrule.DAILY, byweekday=[rrule.SA, rrule.SU])
        span_days = rng.randrange(1, 200)
    elif pattern == 1:
        rec["bWeekInterval"] = rng.choice([1, 1, 2, 3, rng.randrange(1, 10)])
        rec["bWeekDays"] = rng.randrange(1, 128)
        rule = dict(freq=rrule.WEEKLY, interval=rec["bWeekInterval"], wkst=rrule.MO,
                    byweekday=[WEEKDAYS[k] for k in range(7) if rec["bWeekDays"] & (1 << k)])
        span_days = rng.randrange(1, 500)
    elif pattern == 2:
        rec["bMonthInterval"] = rng.choice([1, 1, 2, 3, 6, 12, rng.randrange(1, 25)])
        rec["bMonthlyMode"] = rng.randrange(2)
        if rec["bMonthlyMode"] == 0:
            rec["bMonthDay"] = rng.choice([rng.randrange(1, 32), rng.randrange(28, 32)])
            rule = dict(freq=rrule.MONTHLY, interval=rec["bMonthInterval"], **capped_day(rec["bMonthDay"]))
        else:
            rec["bMonthOrdinal"] = random_ordinal(rng)
            rec["bMonthDayKind"] = random_kind(rng, rec["bMonthOrdinal"])
            rule = dict(freq=rrule.MONTHLY, interval=rec["bMonthInterval"],
                        **ordinal_day(rec["bMonthOrdinal"], rec["bMonthDayKind"]))
        span_days = rng.randrange(1, 2500)
    else:
        rec["bYearMonth"] = rng.randrange(12)
        rec["bYearlyMode"] = rng.randrange(2)
        if rec["bYearlyMode"] == 0:
            rec["bYearDay"] = rng.choice([rng.randrange(1, 32), rng.randrange(28, 32)])
            rule = dict(freq=rrule.YEARLY, bymonth=rec["bYearMonth"] + 1, **capped_day(rec["bYearDay"]))
        else:
            rec["bYearOrdinal"] = random_ordinal(rng)
            rec["bYearDayKind"] = random_kind(rng, rec["bYearOrdinal"])
            rule = dict(freq=rrule.YEARLY, bymonth=rec["bYearMonth"] + 1,
                        **ordinal_day(rec["bYearOrdinal"], rec["bYearDayKind"]))
        span_days = rng.randrange(1, 9000)

    # The date that gives time of day and duration lies in January, away from daylight saving;
    # its day is of no account. It ends before 23:00 so that no date reaches the next day.
    h, mi, s = random_time_of_day(rng)
    start = local(2020, 1, rng.randrange(1, 32), h, mi, s)
    room = 23 * 3600 - 1 - (h * 3600 + mi * 60 + s)
    duration = rng.choice([0, rng.randrange(room + 1), rng.randrange(min(room, 7200) + 1)])
    rec["tStart"] = stamp(start)
    rec["tEnd"] = rec["tStart"] + duration

    # The series start counts by its day; its time of day is random on purpose.
    day = random_day(rng, 1997, 2034)
    sh, smi, ss = random_time_of_day(rng)
    rec["tSeriesStart"] = stamp(local(day.year, day.month, day.day, sh, smi, ss))
    dtstart = local(day.year, day.month, day.day, h, mi, s)

    rec["bEndMode"] = rng.randrange(3)
    rec["wEndCount"] = 1
    rec["tLimit"] = 0
    if rec["bEndMode"] == 1:
        rec["wEndCount"] = rng.randrange(1, 60)
        rule["count"] = rec["wEndCount"]
    else:
        end_day = day + timedelta(days=span_days)
        if end_day.year > LAST_YEAR:
            end_day = datetime(LAST_YEAR, 12, 31)
        eh, emi, es = random_time_of_day(rng)
        limit = local(end_day.year, end_day.month, end_day.day, eh, emi, es)
        rec["tLimit"] = stamp(limit)
        # The limit is exclusive: a date that begins at the limit is not part of the series.
        rule["until"] = datetime.fromtimestamp(rec["tLimit"] - 1, ZONE)

    begins = [stamp(dt) for dt in rrule.rrule(dtstart=dtstart, **rule)]
    if begins and datetime.fromtimestamp(begins[-1], ZONE).year > LAST_YEAR:
        return None
    rec["begins"] = begins
    return rec


FIELDS = ["bPattern", "bDailyMode", "wDayInterval", "bWeekInterval", "bWeekDays", "bMonthlyMode", "bMonthDay",
          "bMonthInterval", "bMonthOrdinal", "bMonthDayKind", "bYearlyMode", "bYearDay", "bYearMonth",
          "bYearOrdinal", "bYearDayKind", "bEndMode", "wEndCount", "tStart", "tEnd", "tSeriesStart", "tLimit"]


def main():
    path = sys.argv[1]
    rng = random.Random(SEED)
    records = []
    while len(records) < RECORDS:
        rec = make_record(rng)
        if rec is not None:
            records.append(rec)
    with open(path, "w", encoding="ascii", newline="\n") as f:
        f.write("# date series reference: seed %d, zone Europe/Berlin, dateutil rrule\n" % SEED)
        f.write("# " + " ".join(FIELDS) + " n begin...\n")
        for rec in records:
            values = [rec[name] for name in FIELDS] + [len(rec["begins"])] + rec["begins"]
            f.write(" ".join(str(v) for v in values) + "\n")
    print("schedule_rrule.txt: %d records, %d dates" % (len(records), sum(len(r["begins"]) for r in records)))


if __name__ == "__main__":
    main()
