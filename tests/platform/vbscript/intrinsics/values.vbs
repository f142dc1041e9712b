' table: conversions, numbers, kinds, formats
T "CBool(1)"                                         ' expect: Boolean True
T "CBool(~True~)"                                    ' expect: Boolean True
T "CBool(~false~)"                                   ' expect: Boolean False
T "CBool(~0~)"                                       ' expect: Boolean False
T "CBool(~2.5~)"                                     ' expect: Boolean True
T "CBool(~x~)"                                       ' expect: error 13
T "CBool(~~)"                                        ' expect: error 13
T "CBool(Null)"                                      ' expect: error 94
T "CBool(Empty)"                                     ' expect: Boolean False
T "CBool(0.1)"                                       ' expect: Boolean True
T "CBool(#12:00 AM#)"                                ' expect: Boolean False
T "CByte(255)"                                       ' expect: Byte 255
T "CByte(256)"                                       ' expect: error 6
T "CByte(-1)"                                        ' expect: error 6
T "CByte(2.5)"                                       ' expect: Byte 2
T "CByte(~12~)"                                      ' expect: Byte 12
T "CByte(True)"                                      ' expect: Byte 255
T "CInt(1.5)"                                        ' expect: Integer 2
T "CInt(2.5)"                                        ' expect: Integer 2
T "CInt(-1.5)"                                       ' expect: Integer -2
T "CInt(-0.5)"                                       ' expect: Integer 0
T "CInt(32767.4)"                                    ' expect: Integer 32767
T "CInt(32767.5)"                                    ' expect: error 6
T "CInt(32768)"                                      ' expect: error 6
T "CInt(~&HFF~)"                                     ' expect: Integer 255
T "CInt(~1,000~)"                                    ' expect: Integer 1000
T "CInt(~abc~)"                                      ' expect: error 13
T "CInt(~~)"                                         ' expect: error 13
T "CInt(Null)"                                       ' expect: error 94
T "CInt(Empty)"                                      ' expect: Integer 0
T "CInt(True)"                                       ' expect: Integer -1
T "CInt(Array(1))"                                   ' expect: error 13
T "CInt(Nothing)"                                    ' expect: error 91
T "CLng(~2147483647~)"                               ' expect: Long 2147483647
T "CLng(2147483648)"                                 ' expect: error 6
T "CLng(~1e3~)"                                      ' expect: Long 1000
T "CLng(~ 12 ~)"                                     ' expect: Long 12
T "CLng(0.5)"                                        ' expect: Long 0
T "CLng(~&H8000~)"                                   ' expect: Long -32768
T "CSng(~1.5~)"                                      ' expect: Single 1.5
T "CSng(1e39)"                                       ' expect: error 6
T "CSng(0.1)"                                        ' expect: Single 0.1
T "CSng(123456789)"                                  ' expect: Single 1.234568E+08
T "CDbl(~1.5e300~)"                                  ' expect: Double 1.5E+300
T "CDbl(~1e400~)"                                    ' expect: error 6
T "CDbl(~1,234.5~)"                                  ' expect: Double 1234.5
T "CDbl(~-.5~)"                                      ' expect: Double -0.5
T "CDbl(~+5~)"                                       ' expect: Double 5
T "CDbl(~- 5~)"                                      ' expect: Double -5
T "CDbl(~5d2~)"                                      ' expect: Double 500
T "CDbl(~1.2.3~)"                                    ' expect: error 13
T "CDbl(Null)"                                       ' expect: error 94
T "CCur(1.23456)"                                    ' expect: Currency 1.2346
T "CCur(1.00005)"                                    ' expect: Currency 1
T "CCur(1.00015)"                                    ' expect: Currency 1.0002
T "CCur(-1.23455)"                                   ' expect: Currency -1.2346
T "CCur(~$1.50~)"                                    ' expect: Currency 1.5
T "CCur(1e15)"                                       ' expect: error 6
T "CStr(1.5)"                                        ' expect: [1.5]
T "CStr(0.1)"                                        ' expect: [0.1]
T "CStr(1/3)"                                        ' expect: [0.333333333333333]
T "CStr(1e15)"                                       ' expect: [1E+15]
T "CStr(1e14)"                                       ' expect: [100000000000000]
T "CStr(123456789012345)"                            ' expect: [123456789012345]
T "CStr(1234567890123456)"                           ' expect: [1.23456789012346E+15]
T "CStr(0.00001)"                                    ' expect: [1E-05]
T "CStr(0.0001)"                                     ' expect: [0.0001]
T "CStr(0.00012345)"                                 ' expect: [0.00012345]
T "CStr(1.5e-7)"                                     ' expect: [1.5E-07]
T "CStr(1e100)"                                      ' expect: [1E+100]
T "CStr(-0.0)"                                       ' expect: [0]
T "CStr(-1.5)"                                       ' expect: [-1.5]
T "CStr(True)"                                       ' expect: [True]
T "CStr(Empty)"                                      ' expect: []
T "CStr(Null)"                                       ' expect: error 94
T "CStr(#1/1/2000#)"                                 ' expect: [1/1/2000]
T "CStr(CSng(0.1))"                                  ' expect: [0.1]
T "CStr(CSng(1)/3)"                                  ' expect: [0.3333333]
T "CStr(CSng(1e7))"                                  ' expect: [1E+07]
T "CStr(CSng(1234567))"                              ' expect: [1234567]
T "CStr(100000)"                                     ' expect: [100000]
T "CStr(Array(1))"                                   ' expect: error 13
T "CStr(Nothing)"                                    ' expect: error 91
T "Abs(-5)"                                          ' expect: Integer 5
T "Abs(-5.5)"                                        ' expect: Double 5.5
T "Abs(Null)"                                        ' expect: Null
T "Abs(~-5~)"                                        ' expect: Double 5
T "Abs(True)"                                        ' expect: Integer 1
T "Abs(-32768)"                                      ' expect: Long 32768
T "Abs(CInt(-32768))"                                ' expect: Long 32768
T "Abs(CByte(5))"                                    ' expect: Byte 5
T "Abs(CCur(-1.5))"                                  ' expect: Currency 1.5
T "Abs(Empty)"                                       ' expect: Integer 0
T "Abs(~x~)"                                         ' expect: error 13
T "Sgn(-5)"                                          ' expect: Integer -1
T "Sgn(0)"                                           ' expect: Integer 0
T "Sgn(2.5)"                                         ' expect: Integer 1
T "Sgn(Null)"                                        ' expect: Null
T "Sgn(~-3~)"                                        ' expect: Integer -1
T "Int(8.4)"                                         ' expect: Double 8
T "Int(-8.4)"                                        ' expect: Double -9
T "Fix(-8.4)"                                        ' expect: Double -8
T "Fix(8.6)"                                         ' expect: Double 8
T "Int(5)"                                           ' expect: Integer 5
T "Int(Null)"                                        ' expect: Null
T "Int(~5.5~)"                                       ' expect: Double 5
T "Int(CCur(-1.5))"                                  ' expect: Currency -2
T "Fix(CCur(-1.5))"                                  ' expect: Currency -1
T "Int(True)"                                        ' expect: Integer -1
T "Int(Empty)"                                       ' expect: Integer 0
T "Int(#1/1/2000 6:00 PM#)"                          ' expect: Date 1/1/2000
T "Int(~x~)"                                         ' expect: error 13
T "Round(2.5)"                                       ' expect: Double 2
T "Round(3.5)"                                       ' expect: Double 4
T "Round(-2.5)"                                      ' expect: Double -2
T "Round(2.345,2)"                                   ' expect: Double 2.34
T "Round(2.355,2)"                                   ' expect: Double 2.36
T "Round(0.125,2)"                                   ' expect: Double 0.12
T "Round(1.005,2)"                                   ' expect: Double 1
T "Round(5)"                                         ' expect: Integer 5
T "Round(5,2)"                                       ' expect: Integer 5
T "Round(Null)"                                      ' expect: Null
T "Round(1.5,-1)"                                    ' expect: error 5
T "Round(~2.5~)"                                     ' expect: Double 2
T "Round(CCur(2.345),2)"                             ' expect: Currency 2.34
T "Round(CSng(2.5))"                                 ' expect: Single 2
T "Round(True)"                                      ' expect: Integer -1
T "Sqr(4)"                                           ' expect: Double 2
T "Sqr(0)"                                           ' expect: Double 0
T "Sqr(-1)"                                          ' expect: error 5
T "Sqr(Null)"                                        ' expect: error 94
T "Sqr(~9~)"                                         ' expect: Double 3
T "Log(1)"                                           ' expect: Double 0
T "Log(0)"                                           ' expect: error 5
T "Log(-1)"                                          ' expect: error 5
T "Exp(0)"                                           ' expect: Double 1
T "Exp(709) > 1"                                     ' expect: Boolean True
T "Exp(710)"                                         ' expect: error 6
T "Exp(-1000)"                                       ' expect: Double 0
T "Sin(0)"                                           ' expect: Double 0
T "Cos(0)"                                           ' expect: Double 1
T "Tan(0)"                                           ' expect: Double 0
T "Atn(1)*4"                                         ' expect: Double 3.14159265358979
T "Sin(~x~)"                                         ' expect: error 13
T "Rnd(-1)"                                          ' expect: Single 0.224007
T "Rnd(0)"                                           ' expect: Single 0.224007
T "TypeName(Rnd)"                                    ' expect: [Single]
T "IsNumeric(1)"                                     ' expect: Boolean True
T "IsNumeric(~1~)"                                   ' expect: Boolean True
T "IsNumeric(~1.5e3~)"                               ' expect: Boolean True
T "IsNumeric(~&H1F~)"                                ' expect: Boolean True
T "IsNumeric(~$1,000~)"                              ' expect: Boolean True
T "IsNumeric(~(5)~)"                                 ' expect: Boolean True
T "IsNumeric(~5-~)"                                  ' expect: Boolean True
T "IsNumeric(~1 2~)"                                 ' expect: Boolean False
T "IsNumeric(~~)"                                    ' expect: Boolean False
T "IsNumeric(~ ~)"                                   ' expect: Boolean False
T "IsNumeric(~abc~)"                                 ' expect: Boolean False
T "IsNumeric(~1e~)"                                  ' expect: Boolean False
T "IsNumeric(~+~)"                                   ' expect: Boolean False
T "IsNumeric(~.~)"                                   ' expect: Boolean False
T "IsNumeric(~.5~)"                                  ' expect: Boolean True
T "IsNumeric(~5.~)"                                  ' expect: Boolean True
T "IsNumeric(~1,2,3~)"                               ' expect: Boolean True
T "IsNumeric(~%5~)"                                  ' expect: Boolean False
T "IsNumeric(~5%~)"                                  ' expect: Boolean False
T "IsNumeric(Null)"                                  ' expect: Boolean False
T "IsNumeric(Empty)"                                 ' expect: Boolean True
T "IsNumeric(True)"                                  ' expect: Boolean True
T "IsNumeric(~True~)"                                ' expect: Boolean False
T "IsNumeric(#1/1/2000#)"                            ' expect: Boolean False
T "IsNumeric(~1/1/2000~)"                            ' expect: Boolean False
T "IsNumeric(Nothing)"                               ' expect: Boolean False
T "IsNumeric(Array(1))"                              ' expect: Boolean False
T "IsNumeric(~ 1 ~)"                                 ' expect: Boolean True
T "IsNumeric(~1~&vbLf)"                              ' expect: Boolean True
T "VarType(Empty)"                                   ' expect: Integer 0
T "VarType(Null)"                                    ' expect: Integer 1
T "VarType(1)"                                       ' expect: Integer 2
T "VarType(CLng(1))"                                 ' expect: Integer 3
T "VarType(CSng(1))"                                 ' expect: Integer 4
T "VarType(1.5)"                                     ' expect: Integer 5
T "VarType(CCur(1))"                                 ' expect: Integer 6
T "VarType(Date)"                                    ' expect: Integer 7
T "VarType(~~)"                                      ' expect: Integer 8
T "VarType(Nothing)"                                 ' expect: Integer 9
T "VarType(True)"                                    ' expect: Integer 11
T "VarType(CByte(1))"                                ' expect: Integer 17
T "VarType(Array(1))"                                ' expect: Integer 8204
T "TypeName(Array(1))"                               ' expect: [Variant()]
T "TypeName(Nothing)"                                ' expect: [Nothing]
T "TypeName(Empty)"                                  ' expect: [Empty]
T "TypeName(Null)"                                   ' expect: [Null]
T "TypeName(New RegExp)"                             ' expect: [IRegExp2]
T "TypeName(Err)"                                    ' expect: [Object]
T "TypeName(CreateObject(~Scripting.Dictionary~))"   ' expect: [Dictionary]
T "IsArray(Array())"                                 ' expect: Boolean True
T "IsArray(1)"                                       ' expect: Boolean False
T "IsObject(Nothing)"                                ' expect: Boolean True
T "IsObject(Err)"                                    ' expect: Boolean True
T "IsObject(1)"                                      ' expect: Boolean False
T "IsEmpty(Empty)"                                   ' expect: Boolean True
T "IsEmpty(~~)"                                      ' expect: Boolean False
T "IsEmpty(undefinedvar)"                            ' expect: Boolean True
T "IsNull(Null)"                                     ' expect: Boolean True
T "IsNull(Empty)"                                    ' expect: Boolean False
T "UBound(Array(1,2))"                               ' expect: Long 1
T "UBound(Array())"                                  ' expect: Long -1
T "LBound(Array())"                                  ' expect: Long 0
T "UBound(Array(1),2)"                               ' expect: error 9
T "UBound(Array(1),0)"                               ' expect: error 9
T "UBound(1)"                                        ' expect: error 13
T "LBound(~x~)"                                      ' expect: error 13
T "RGB(1,2,3)"                                       ' expect: Long 197121
T "RGB(256,0,0)"                                     ' expect: Long 255
T "RGB(-1,0,0)"                                      ' expect: error 5
T "RGB(255,255,255)"                                 ' expect: Long 16777215
T "ScriptEngine"                                     ' expect: [VBScript]
T "ScriptEngineMajorVersion"                         ' expect: Long 5
T "Eval(~1+1~)"                                      ' expect: Integer 2
T "Eval(~x = 5~)"                                    ' expect: Boolean False
T "Eval(~~)"                                         ' expect: error 1023
T "Eval(~1 1~)"                                      ' expect: error 1025
T "Eval(Null)"                                       ' expect: error 94
T "Eval(5)"                                          ' expect: Integer 5
T "Array(1,,2)(0)"                                   ' expect: Integer 1
T "Array(1,Array(2,3))(1)(0)"                        ' expect: Integer 2
T "GetLocale"                                        ' expect: Long 1033
T "FormatNumber(1234.567)"                           ' expect: [1,234.57]
T "FormatNumber(1234.567,1)"                         ' expect: [1,234.6]
T "FormatNumber(0.5)"                                ' expect: [0.50]
T "FormatNumber(0.5,2,0)"                            ' expect: [.50]
T "FormatNumber(-0.5,2,0)"                           ' expect: [-.50]
T "FormatNumber(-5,2,-1,-1)"                         ' expect: [(5.00)]
T "FormatNumber(1234567,0,-1,0,0)"                   ' expect: [1234567]
T "FormatNumber(1234567,0)"                          ' expect: [1,234,567]
T "FormatNumber(2.5,0)"                              ' expect: [3]
T "FormatNumber(-2.5,0)"                             ' expect: [-3]
T "FormatNumber(0.125,2)"                            ' expect: [0.13]
T "FormatNumber(~12.3~)"                             ' expect: [12.30]
T "FormatNumber(~x~)"                                ' expect: error 13
T "FormatNumber(Null)"                               ' expect: error 94
T "FormatNumber(1,-2)"                               ' expect: error 5
T "FormatNumber(-0.001,2)"                           ' expect: [0.00]
T "FormatNumber(Empty)"                              ' expect: [0.00]
T "FormatNumber(True)"                               ' expect: [-1.00]
T "FormatNumber(1e20,0)"                             ' expect: [100,000,000,000,000,000,000]
T "FormatCurrency(1234.5)"                           ' expect: [$1,234.50]
T "FormatCurrency(-1234.5)"                          ' expect: [($1,234.50)]
T "FormatCurrency(-1234.5,2,-1,0)"                   ' expect: [-$1,234.50]
T "FormatCurrency(0.5,2,0)"                          ' expect: [$.50]
T "FormatPercent(0.1234)"                            ' expect: [12.34%]
T "FormatPercent(0.12345,1)"                         ' expect: [12.3%]
T "FormatPercent(-0.5)"                              ' expect: [-50.00%]
T "FormatPercent(-0.5,0,-1,-1)"                      ' expect: [(50%)]
T "FormatPercent(12.345,0)"                          ' expect: [1,235%]
T "FormatPercent(1000,0,-1,0,0)"                     ' expect: [100000%]
T "CreateObject(~a.b~)"                              ' expect: error 429
T "GetObject(~winmgmts:~)"                           ' expect: error 432
T "GetRef(~nope~)"                                   ' expect: error 5
T "MsgBox(~x~)"                                      ' expect: error 70
T "InputBox(~x~)"                                    ' expect: error 70
T "LoadPicture(~nope~)"                              ' expect: error 481
