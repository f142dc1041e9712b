' table: what SetLocale changes, and what it does not
T "SetLocale(~de-DE~)"                             ' expect: Long 1033
T "CStr(1.5)"                                      ' expect: [1,5]
T "CDbl(~1.234,5~)"                                ' expect: Double 1234,5
T "FormatNumber(1234.5)"                           ' expect: [1.234,50]
T "CStr(#1/31/2000#)"                              ' expect: [31.01.2000]
T "CDate(~31.1.2000~)"                             ' expect: Date 31.01.2000
T "MonthName(3)"                                   ' expect: [März]
T "CStr(True)"                                     ' expect: [True]
T "1.5 & ~~"                                       ' expect: [1,5]
T "#1/2/2000#"                                     ' expect: Date 02.01.2000
T "GetLocale"                                      ' expect: Long 1031
T "SetLocale(~en-gb~)"                             ' expect: Long 1031
T "CStr(#1/31/2000 3:04:05 PM#)"                   ' expect: [31/01/2000 15:04:05]
T "CDate(~2/1/2000~) = #1/2/2000#"                 ' expect: Boolean True
T "FormatCurrency(-5)"                             ' expect: [-£5.00]
T "SetLocale(1033)"                                ' expect: Long 2057
T "FormatCurrency(1234.5)"                         ' expect: [$1,234.50]
T "FormatDateTime(#1/2/2000 3:04:05 PM#,1)"        ' expect: [Sunday, January 2, 2000]
T "CStr(#1/2/2000 3:04:05 PM#)"                    ' expect: [1/2/2000 3:04:05 PM]
T "WeekdayName(1)"                                 ' expect: [Sunday]
T "SetLocale(~xx-yy~)"                             ' expect: error 447
SetLocale 1033
