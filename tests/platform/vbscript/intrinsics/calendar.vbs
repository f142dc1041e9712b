' table: functions of dates and times
T "Year(#3/15/2001 1:02:03 PM#)"                           ' expect: Integer 2001
T "Month(~3/15/2001~)"                                     ' expect: Integer 3
T "Day(36526)"                                             ' expect: Integer 1
T "Hour(0.5)"                                              ' expect: Integer 12
T "Minute(#1:02:03 PM#)"                                   ' expect: Integer 2
T "Second(#1:02:03 PM#)"                                   ' expect: Integer 3
T "Hour(Null)"                                             ' expect: Null
T "Year(Null)"                                             ' expect: Null
T "Year(~x~)"                                              ' expect: error 13
T "Year(Empty)"                                            ' expect: Integer 1899
T "Weekday(#1/1/2000#)"                                    ' expect: Integer 7
T "Weekday(#1/1/2000#,2)"                                  ' expect: Integer 6
T "Weekday(#1/1/2000#,7)"                                  ' expect: Integer 1
T "Weekday(#1/1/2000#,8)"                                  ' expect: error 5
T "Weekday(#1/1/2000#,-1)"                                 ' expect: error 5
T "Weekday(Null)"                                          ' expect: Null
T "WeekdayName(1,False,1)"                                 ' expect: [Sunday]
T "WeekdayName(1,True,1)"                                  ' expect: [Sun]
T "WeekdayName(1,False,2)"                                 ' expect: [Monday]
T "WeekdayName(7,False,2)"                                 ' expect: [Sunday]
T "WeekdayName(0)"                                         ' expect: error 5
T "WeekdayName(8)"                                         ' expect: error 5
T "MonthName(1)"                                           ' expect: [January]
T "MonthName(12,True)"                                     ' expect: [Dec]
T "MonthName(0)"                                           ' expect: error 5
T "MonthName(13)"                                          ' expect: error 5
T "MonthName(1.6)"                                         ' expect: [February]
T "DateSerial(2000,1,31)"                                  ' expect: Date 1/31/2000
T "DateSerial(2000,13,1)"                                  ' expect: Date 1/1/2001
T "DateSerial(2000,0,1)"                                   ' expect: Date 12/1/1999
T "DateSerial(2000,1,0)"                                   ' expect: Date 12/31/1999
T "DateSerial(2000,13,0)"                                  ' expect: Date 12/31/2000
T "DateSerial(2000,3,-1)"                                  ' expect: Date 2/28/2000
T "DateSerial(2001,2,29)"                                  ' expect: Date 3/1/2001
T "DateSerial(29,1,1)"                                     ' expect: Date 1/1/2029
T "DateSerial(30,1,1)"                                     ' expect: Date 1/1/1930
T "DateSerial(99,1,1)"                                     ' expect: Date 1/1/1999
T "DateSerial(0,1,1)"                                      ' expect: Date 1/1/2000
T "DateSerial(2000,-11,1)"                                 ' expect: Date 1/1/1999
T "DateSerial(10000,1,1)"                                  ' expect: error 5
T "DateSerial(2000,1,40000)"                               ' expect: error 6
T "DateSerial(~2000~,~2~,~1~)"                             ' expect: Date 2/1/2000
T "DateSerial(2000.5,1,1)"                                 ' expect: Date 1/1/2000
T "DateSerial(Null,1,1)"                                   ' expect: error 94
T "TimeSerial(1,2,3)"                                      ' expect: Date 1:02:03 AM
T "TimeSerial(13,0,0)"                                     ' expect: Date 1:00:00 PM
T "TimeSerial(0,90,0)"                                     ' expect: Date 1:30:00 AM
T "TimeSerial(12,-1,0)"                                    ' expect: Date 11:59:00 AM
T "TimeSerial(0,0,3661)"                                   ' expect: Date 1:01:01 AM
T "TimeSerial(24,0,0)"                                     ' expect: Date 12/31/1899
T "TimeSerial(25,0,0)"                                     ' expect: Date 12/31/1899 1:00:00 AM
T "TimeSerial(32768,0,0)"                                  ' expect: error 6
T "DateValue(~1/31/2000~)"                                 ' expect: Date 1/31/2000
T "DateValue(~1/31/2000 10:00 AM~)"                        ' expect: Date 1/31/2000
T "DateValue(~Jan 31, 2000~)"                              ' expect: Date 1/31/2000
T "DateValue(~x~)"                                         ' expect: error 13
T "DateValue(Null)"                                        ' expect: error 94
T "TimeValue(~10:30 PM~)"                                  ' expect: Date 10:30:00 PM
T "TimeValue(~1/1/2000 10:30 PM~)"                         ' expect: Date 10:30:00 PM
T "TimeValue(~14:30:15~)"                                  ' expect: Date 2:30:15 PM
T "TimeValue(~x~)"                                         ' expect: error 13
T "CDate(~1/31/2000~)"                                     ' expect: Date 1/31/2000
T "CDate(~31/1/2000~)"                                     ' expect: Date 1/31/2000
T "CDate(~13/02/2001~)"                                    ' expect: Date 2/13/2001
T "CDate(~10:30~)"                                         ' expect: Date 10:30:00 AM
T "CDate(~2000-02-29~)"                                    ' expect: Date 2/29/2000
T "CDate(~Feb 30 2000~)"                                   ' expect: error 13
T "CDate(~12~)"                                            ' expect: Date 1/11/1900
T "CDate(36526)"                                           ' expect: Date 1/1/2000
T "CDate(~36526~)"                                         ' expect: Date 1/1/2000
T "CDate(36526.5)"                                         ' expect: Date 1/1/2000 12:00:00 PM
T "CDate(-1.25)"                                           ' expect: Date 12/29/1899 6:00:00 AM
T "CDate(Null)"                                            ' expect: error 94
T "CDate(~abc~)"                                           ' expect: error 13
T "CDate(~~)"                                              ' expect: error 13
T "CDate(1e9)"                                             ' expect: error 6
T "CDate(Empty)"                                           ' expect: Date 12:00:00 AM
T "CDate(True)"                                            ' expect: Date 12/29/1899
T "CDate(~March 5~) - DateSerial(Year(Date),3,5)"          ' expect: Double 0
T "CDate(~March 2005~)"                                    ' expect: Date 3/1/2005
T "CDate(~5 March 2005 3pm~)"                              ' expect: Date 3/5/2005 3:00:00 PM
T "DateAdd(~yyyy~,1,#2/29/2000#)"                          ' expect: Date 2/28/2001
T "DateAdd(~q~,1,#1/31/2000#)"                             ' expect: Date 4/30/2000
T "DateAdd(~m~,1,#1/31/2000#)"                             ' expect: Date 2/29/2000
T "DateAdd(~m~,-1,#3/31/2001#)"                            ' expect: Date 2/28/2001
T "DateAdd(~y~,1,#12/31/2000#)"                            ' expect: Date 1/1/2001
T "DateAdd(~d~,1,#12/31/2000#)"                            ' expect: Date 1/1/2001
T "DateAdd(~w~,1,#12/31/2000#)"                            ' expect: Date 1/1/2001
T "DateAdd(~ww~,1,#12/31/2000#)"                           ' expect: Date 1/7/2001
T "DateAdd(~h~,25,#1/1/2000#)"                             ' expect: Date 1/2/2000 1:00:00 AM
T "DateAdd(~n~,-1,#1/1/2000#)"                             ' expect: Date 12/31/1999 11:59:00 PM
T "DateAdd(~s~,1,#1/1/2000#)"                              ' expect: Date 1/1/2000 12:00:01 AM
T "DateAdd(~D~,1.5,#1/1/2000#)"                            ' expect: Date 1/3/2000
T "DateAdd(~d~,2.5,#1/1/2000#)"                            ' expect: Date 1/3/2000
T "DateAdd(~x~,1,#1/1/2000#)"                              ' expect: error 5
T "DateAdd(~d~,Null,#1/1/2000#)"                           ' expect: error 94
T "DateAdd(~d~,1,Null)"                                    ' expect: Null
T "DateAdd(~d~,1,~1/1/2000~)"                              ' expect: Date 1/2/2000
T "DateAdd(~yyyy~,10000,#1/1/2000#)"                       ' expect: error 5
T "DateDiff(~yyyy~,#12/31/1999#,#1/1/2000#)"               ' expect: Long 1
T "DateDiff(~q~,#3/31/2000#,#4/1/2000#)"                   ' expect: Long 1
T "DateDiff(~m~,#1/31/2000#,#2/1/2000#)"                   ' expect: Long 1
T "DateDiff(~d~,#1/1/2000 11:00 PM#,#1/2/2000 1:00 AM#)"   ' expect: Long 1
T "DateDiff(~y~,#1/1/2000#,#1/1/2001#)"                    ' expect: Long 366
T "DateDiff(~w~,#1/1/2000#,#1/8/2000#)"                    ' expect: Long 1
T "DateDiff(~w~,#1/1/2000#,#1/7/2000#)"                    ' expect: Long 0
T "DateDiff(~ww~,#1/1/2000#,#1/2/2000#)"                   ' expect: Long 1
T "DateDiff(~ww~,#1/2/2000#,#1/8/2000#)"                   ' expect: Long 0
T "DateDiff(~ww~,#1/2/2000#,#1/9/2000#)"                   ' expect: Long 1
T "DateDiff(~ww~,#1/1/2000#,#1/2/2000#,2)"                 ' expect: Long 0
T "DateDiff(~ww~,#1/1/2000#,#1/3/2000#,2)"                 ' expect: Long 1
T "DateDiff(~h~,#1/1/2000 1:59 AM#,#1/1/2000 2:00 AM#)"    ' expect: Long 1
T "DateDiff(~n~,#1:00:59 AM#,#1:01:00 AM#)"                ' expect: Long 1
T "DateDiff(~s~,#1/1/2000#,#1/2/2000#)"                    ' expect: Long 86400
T "DateDiff(~d~,#1/2/2000#,#1/1/2000#)"                    ' expect: Long -1
T "DateDiff(~ww~,#1/9/2000#,#1/2/2000#)"                   ' expect: Long -1
T "DateDiff(~s~,#1/1/1900#,#1/1/2000#)"                    ' expect: error 6
T "DateDiff(~d~,Null,#1/1/2000#)"                          ' expect: Null
T "DateDiff(~z~,#1/1/2000#,#1/1/2000#)"                    ' expect: error 5
T "DatePart(~yyyy~,#3/15/2001 4:05:06 PM#)"                ' expect: Integer 2001
T "DatePart(~q~,#3/15/2001#)"                              ' expect: Integer 1
T "DatePart(~m~,#3/15/2001#)"                              ' expect: Integer 3
T "DatePart(~y~,#3/15/2001#)"                              ' expect: Integer 74
T "DatePart(~d~,#3/15/2001#)"                              ' expect: Integer 15
T "DatePart(~w~,#3/15/2001#)"                              ' expect: Integer 5
T "DatePart(~w~,#3/15/2001#,2)"                            ' expect: Integer 4
T "DatePart(~ww~,#3/15/2001#)"                             ' expect: Integer 11
T "DatePart(~ww~,#1/1/2000#)"                              ' expect: Integer 1
T "DatePart(~ww~,#1/2/2000#)"                              ' expect: Integer 2
T "DatePart(~ww~,#1/1/2000#,2,2)"                          ' expect: Integer 52
T "DatePart(~ww~,#1/3/2000#,2,2)"                          ' expect: Integer 1
T "DatePart(~ww~,#1/1/2000#,1,3)"                          ' expect: Integer 52
T "DatePart(~ww~,#12/31/2000#,1,1)"                        ' expect: Integer 54
T "DatePart(~h~,#3/15/2001 4:05:06 PM#)"                   ' expect: Integer 16
T "DatePart(~n~,#3/15/2001 4:05:06 PM#)"                   ' expect: Integer 5
T "DatePart(~s~,#3/15/2001 4:05:06 PM#)"                   ' expect: Integer 6
T "DatePart(~d~,Null)"                                     ' expect: Null
T "IsDate(~1/1/2000~)"                                     ' expect: Boolean True
T "IsDate(~13/13/2000~)"                                   ' expect: Boolean False
T "IsDate(#1/1/2000#)"                                     ' expect: Boolean True
T "IsDate(36526)"                                          ' expect: Boolean False
T "IsDate(~36526~)"                                        ' expect: Boolean False
T "IsDate(Null)"                                           ' expect: Boolean False
T "IsDate(Empty)"                                          ' expect: Boolean False
T "IsDate(~10:30~)"                                        ' expect: Boolean True
T "IsDate(~Jan 5~)"                                        ' expect: Boolean True
T "IsDate(~Sunday~)"                                       ' expect: Boolean False
T "IsDate(~~)"                                             ' expect: Boolean False
T "IsDate(~2/29/2001~)"                                    ' expect: Boolean False
T "IsDate(~1.2.2000~)"                                     ' expect: Boolean True
T "IsDate(~25:00~)"                                        ' expect: Boolean False
T "FormatDateTime(#1/2/2000 3:04:05 PM#)"                  ' expect: [1/2/2000 3:04:05 PM]
T "FormatDateTime(#1/2/2000 3:04:05 PM#,0)"                ' expect: [1/2/2000 3:04:05 PM]
T "FormatDateTime(#1/2/2000#)"                             ' expect: [1/2/2000]
T "FormatDateTime(#3:04:05 PM#)"                           ' expect: [3:04:05 PM]
T "FormatDateTime(#1/2/2000 3:04:05 PM#,1)"                ' expect: [Sunday, January 2, 2000]
T "FormatDateTime(#1/2/2000 3:04:05 PM#,2)"                ' expect: [1/2/2000]
T "FormatDateTime(#1/2/2000 3:04:05 PM#,3)"                ' expect: [3:04:05 PM]
T "FormatDateTime(#1/2/2000 3:04:05 PM#,4)"                ' expect: [15:04]
T "FormatDateTime(#1/2/2000#,5)"                           ' expect: error 5
T "FormatDateTime(~x~)"                                    ' expect: error 13
T "TypeName(Now)"                                          ' expect: [Date]
T "TypeName(Date)"                                         ' expect: [Date]
T "TypeName(Time)"                                         ' expect: [Date]
T "TypeName(Timer)"                                        ' expect: [Single]
T "Date = Int(Now)"                                        ' expect: Boolean True
T "Now() >= Date()"                                        ' expect: Boolean True
T "CDbl(#6:00:00 PM#)"                                     ' expect: Double 0.75
T "CDbl(#1/1/1900#)"                                       ' expect: Double 2
T "CStr(#12/29/1899 6:00:00 AM#)"                          ' expect: [12/29/1899 6:00:00 AM]
T "CLng(#1/1/2000 12:00:00 PM#)"                           ' expect: Long 36526
T "CInt(#1/3/1900#)"                                       ' expect: Integer 4
