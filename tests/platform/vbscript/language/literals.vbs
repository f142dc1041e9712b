' table: literals and the ranks of operators
T "1"                           ' expect: Integer 1
T "32767"                       ' expect: Integer 32767
T "32768"                       ' expect: Long 32768
T "2147483647"                  ' expect: Long 2147483647
T "2147483648"                  ' expect: Double 2147483648
T "-32768"                      ' expect: Long -32768
T "-2147483648"                 ' expect: Double -2147483648
T "00012"                       ' expect: Integer 12
T ".5"                          ' expect: Double 0.5
T "5."                          ' expect: Double 5
T "1E3"                         ' expect: Double 1000
T "1.5e-3"                      ' expect: Double 0.0015
T "1e+2"                        ' expect: Double 100
T "1e400"                       ' expect: error 1031
T "1e"                          ' expect: error 1031
T "1x"                          ' expect: error 1031
T "&HFF"                        ' expect: Integer 255
T "&hff"                        ' expect: Integer 255
T "&HFFFF"                      ' expect: Integer -1
T "&HFFFF&"                     ' expect: Long 65535
T "&H8000"                      ' expect: Integer -32768
T "&H7FFF"                      ' expect: Integer 32767
T "&H10000"                     ' expect: Long 65536
T "&HFFFFF"                     ' expect: Long 1048575
T "&H7FFFFFFF"                  ' expect: Long 2147483647
T "&H80000000"                  ' expect: Long -2147483648
T "&HFFFFFFFF"                  ' expect: Long -1
T "&H00001"                     ' expect: Integer 1
T "&H0000FFFF"                  ' expect: Integer -1
T "&H"                          ' expect: error 1031
T "&H1FFFFFFFF"                 ' expect: error 1031
T "&O17"                        ' expect: Integer 15
T "&o17&"                       ' expect: Long 15
T "&17"                         ' expect: Integer 15
T "&17&"                        ' expect: Long 15
T "&O177777"                    ' expect: Integer -1
T "&O177777&"                   ' expect: Long 65535
T "&O200000"                    ' expect: Long 65536
T "&O8"                         ' expect: error 1031
T "&9"                          ' expect: error 1031
T "&HG"                         ' expect: error 1031
T "~a~~b~"                      ' expect: [a"b]
T "~~~~"                        ' expect: ["]
T "~~"                          ' expect: []
T "~it's~"                      ' expect: [it's]
T "~abc"                        ' expect: error 1033
T "#1/31/2000#"                 ' expect: Date 1/31/2000
T "#1/2/2000 3:04 PM#"          ' expect: Date 1/2/2000 3:04:00 PM
T "#10:30:00 PM#"               ' expect: Date 10:30:00 PM
T "#10:30#"                     ' expect: Date 10:30:00 AM
T "#10 PM#"                     ' expect: Date 10:00:00 PM
T "#31 Jan 2000#"               ' expect: Date 1/31/2000
T "#January 31, 2000#"          ' expect: Date 1/31/2000
T "#Jan 31 2000#"               ' expect: Date 1/31/2000
T "#31-Jan-2000#"               ' expect: Date 1/31/2000
T "#2000-01-31#"                ' expect: Date 1/31/2000
T "#2000-01-31 10:30:00#"       ' expect: Date 1/31/2000 10:30:00 AM
T "#2000/1/31#"                 ' expect: Date 1/31/2000
T "#13/2/2001#"                 ' expect: Date 2/13/2001
T "#1/1/29#"                    ' expect: Date 1/1/2029
T "#1/1/30#"                    ' expect: Date 1/1/1930
T "#1/1/99#"                    ' expect: Date 1/1/1999
T "#1-31-2000#"                 ' expect: Date 1/31/2000
T "#2/30/2000#"                 ' expect: error 1002
T "#abc#"                       ' expect: error 1002
T "#1/1/2000"                   ' expect: error 1002
T "#12/30/1899#"                ' expect: Date 12:00:00 AM
T "#1/1/100#"                   ' expect: Date 1/1/100
T "#12/31/9999 11:59:59 PM#"    ' expect: Date 12/31/9999 11:59:59 PM
T "#13:00#"                     ' expect: Date 1:00:00 PM
T "#25:00#"                     ' expect: error 1002
T "#12:00 AM#"                  ' expect: Date 12:00:00 AM
T "#12:00 PM#"                  ' expect: Date 12:00:00 PM
T "True"                        ' expect: Boolean True
T "False"                       ' expect: Boolean False
T "Null"                        ' expect: Null
T "Empty"                       ' expect: Empty
T "tRuE"                        ' expect: Boolean True
T "vbCrLf = vbNewLine"          ' expect: Boolean True
T "vbNullString"                ' expect: []
T "vbObjectError"               ' expect: Long -2147221504
T "5><4"                        ' expect: Boolean True
T "3=<4"                        ' expect: Boolean True
T "3=>4"                        ' expect: Boolean False
T "(((1)))"                     ' expect: Integer 1
T "-(-1)"                       ' expect: Integer 1
T "- -1"                        ' expect: Integer 1
T "--1"                         ' expect: Integer 1
T "+-+1"                        ' expect: Integer -1
T "+~5~"                        ' expect: Double 5
T "not not true"                ' expect: Boolean True
T "Not 1 + 1"                   ' expect: Integer -3
T "2 * -3"                      ' expect: Integer -6
T "2 ^ -1"                      ' expect: Double 0.5
T "2 ^ - - 1"                   ' expect: Double 2
T "-2 ^ 2"                      ' expect: Double -4
T "-2 ^ -2"                     ' expect: Double -0.25
T "2 ^ 3 ^ 2"                   ' expect: Double 64
T "6 / 2 * 3"                   ' expect: Double 9
T "7 \ 2 * 2"                   ' expect: Integer 1
T "7 Mod 4 \ 2"                 ' expect: Integer 1
T "7 Mod 2 * 3"                 ' expect: Integer 1
T "2 + 3 & 4 * 5"               ' expect: [520]
T "1 & 2 + 3"                   ' expect: [15]
T "~a~ & 1 = ~a1~"              ' expect: Boolean True
T "1 = 1 = 1"                   ' expect: Boolean False
T "1 < 2 = True"                ' expect: Boolean True
T "Not 1 = 2"                   ' expect: Boolean True
T "Not Nothing Is Nothing"      ' expect: Boolean False
T "1 Or 2 And 4"                ' expect: Integer 1
T "1 Xor 3 Or 4"                ' expect: Integer 6
T "True Eqv False Xor True"     ' expect: Boolean True
T "False Imp False Eqv False"   ' expect: Boolean True
T "10 - 3 - 2"                  ' expect: Integer 5
T "100 / 10 / 2"                ' expect: Double 5
T "100 \ 7 \ 2"                 ' expect: Integer 7
T "100 Mod 7 Mod 2"             ' expect: Integer 0
T "1 - -1"                      ' expect: Integer 2
T "1 + + 1"                     ' expect: Integer 2
T "~x~ & -1"                    ' expect: [x-1]
T "&H10 + 1"                    ' expect: Integer 17
T "1 &H10"                      ' expect: error 1025
T "~a~&~b~"                     ' expect: [ab]
T "~a~ &2"                      ' expect: [a2]
T "1&2"                         ' expect: [12]
T "Mod"                         ' expect: error 1023
T "1 +"                         ' expect: error 1023
T "(1"                          ' expect: error 1006
T "1)"                          ' expect: error 1025
T "1 2"                         ' expect: error 1025
T "?"                           ' expect: error 1032
T "a.b."                        ' expect: error 1010
T "x..y"                        ' expect: error 1010
