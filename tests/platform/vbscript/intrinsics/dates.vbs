Dim d : d = #2/29/2004 13:05:09#
WScript.Echo d, Year(d), Month(d), Day(d), Hour(d), Minute(d), Second(d), Weekday(d) ' expect: 2/29/2004 1:05:09 PM 2004 2 29 13 5 9 1
WScript.Echo DateSerial(2000, 13, 0), DateSerial(99, 1, 1), DateSerial(5, 1, 1), CStr(TimeSerial(25, 0, 0) - 1) = CStr(TimeSerial(1, 0, 0)) ' expect: 12/31/2000 1/1/1999 1/1/2005 True
WScript.Echo TimeSerial(14, 30, 0), TimeValue("2:30 PM"), DateValue("Jan 5, 2001 3:00"), CDate("31/12/1999") ' expect: 2:30:00 PM 2:30:00 PM 1/5/2001 12/31/1999
WScript.Echo DateAdd("m", 1, #1/31/2001#), DateAdd("yyyy", 1, d), DateAdd("d", -1, #3/1/2000#), DateAdd("h", 25, #1/1/2000#), DateAdd("ww", 1, #1/1/2000#), DateAdd("q", 1, #1/1/2000#)
' expect: 2/28/2001 2/28/2005 1:05:09 PM 2/29/2000 1/2/2000 1:00:00 AM 1/8/2000 4/1/2000
WScript.Echo DateDiff("yyyy", #12/31/1999#, #1/1/2000#), DateDiff("m", #1/31/2000#, #2/1/2000#), DateDiff("d", #1/1/2000#, #3/1/2000#), DateDiff("h", #1:59:00#, #2:01:00#), DateDiff("w", #1/1/2000#, #1/15/2000#), DateDiff("ww", #1/1/2000#, #1/2/2000#), DateDiff("s", #1/1/2000#, #12/31/1999#)
' expect: 1 1 60 1 2 1 -86400
WScript.Echo DatePart("q", d), DatePart("y", d), DatePart("ww", #1/2/2000#), DatePart("ww", #1/1/2010#, 2, 2), DatePart("w", d, 2) ' expect: 1 60 2 53 7
WScript.Echo MonthName(1), MonthName(12, True), WeekdayName(1), WeekdayName(1, True, 2), Weekday(#1/3/2000#, 2) ' expect: January Dec Sunday Mon 1
WScript.Echo FormatDateTime(d), FormatDateTime(d, 1), FormatDateTime(d, 2), FormatDateTime(d, 3), FormatDateTime(d, 4)
' expect: 2/29/2004 1:05:09 PM Sunday, February 29, 2004 2/29/2004 1:05:09 PM 13:05
WScript.Echo IsDate("1/2/2003"), IsDate("nonsense"), IsDate(5), IsDate(Date), IsDate("25:00"), CDbl(#6:00:00#), CDbl(#12/29/1899 6:00:00#) ' expect: True False False True False 0.25 -1.25
WScript.Echo Date = Int(Now), Timer >= 0, TypeName(Now), IsNull(Year(Null)) ' expect: True True Date True
WScript.Echo #12/30/1899#, CDate(0.5), CDate(36526.25) ' expect: 12:00:00 AM 12:00:00 PM 1/1/2000 6:00:00 AM
