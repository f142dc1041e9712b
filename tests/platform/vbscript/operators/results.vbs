' table: what operators give, and of which kind
T "CByte(200)+CByte(55)"           ' expect: Byte 255
T "CByte(200)+CByte(100)"          ' expect: Integer 300
T "CByte(1)-CByte(2)"              ' expect: Integer -1
T "CByte(16)*CByte(16)"            ' expect: Integer 256
T "CByte(3)*CByte(4)"              ' expect: Byte 12
T "CByte(1)+1"                     ' expect: Integer 2
T "CByte(1)+True"                  ' expect: Integer 0
T "CByte(7)\CByte(2)"              ' expect: Byte 3
T "CByte(7) Mod CByte(4)"          ' expect: Byte 3
T "CByte(5)/CByte(2)"              ' expect: Double 2.5
T "-CByte(5)"                      ' expect: Integer -5
T "Not CByte(5)"                   ' expect: Byte 250
T "CByte(5) And CByte(3)"          ' expect: Byte 1
T "CByte(5) And 3"                 ' expect: Integer 1
T "CByte(5) Or True"               ' expect: Integer -1
T "32767+1"                        ' expect: Long 32768
T "-32767-2"                       ' expect: Long -32769
T "32767*32767"                    ' expect: Long 1073676289
T "2147483647+1"                   ' expect: Double 2147483648
T "2147483647*2"                   ' expect: Double 4294967294
T "-2147483647-2"                  ' expect: Double -2147483649
T "CLng(5)+CSng(1.5)"              ' expect: Double 6.5
T "5+CSng(1.5)"                    ' expect: Single 6.5
T "CSng(1.5)*2"                    ' expect: Single 3
T "CSng(3e38)*CSng(10)"            ' expect: Double 3.00000000549776E+39
T "CSng(1)/CSng(3)"                ' expect: Single 0.3333333
T "CSng(1)/3"                      ' expect: Single 0.3333333
T "CSng(1)/CLng(3)"                ' expect: Double 0.333333333333333
T "1/3"                            ' expect: Double 0.333333333333333
T "4/2"                            ' expect: Double 2
T "CCur(1.5)+1"                    ' expect: Currency 2.5
T "CCur(1.5)+CDbl(1)"              ' expect: Currency 2.5
T "CCur(1.5)*2"                    ' expect: Currency 3
T "CCur(1.5)*CCur(1.5)"            ' expect: Currency 2.25
T "CCur(1.5)*1.5"                  ' expect: Double 2.25
T "CCur(3)/2"                      ' expect: Double 1.5
T "CCur(922337203685477) + 1000"   ' expect: error 6
T "CCur(9e14)*CCur(9e14)"          ' expect: error 6
T "-CCur(1.5)"                     ' expect: Currency -1.5
T "CCur(7.5)\2"                    ' expect: Long 4
T "CCur(1.5) + #1/1/2000#"         ' expect: Date 1/2/2000 12:00:00 PM
T "True+True"                      ' expect: Integer -2
T "True*5"                         ' expect: Integer -5
T "-True"                          ' expect: Integer 1
T "-False"                         ' expect: Integer 0
T "-Empty"                         ' expect: Integer 0
T "Empty+Empty"                    ' expect: Integer 0
T "Empty+1"                        ' expect: Integer 1
T "Empty+~x~"                      ' expect: [x]
T "~x~+Empty"                      ' expect: [x]
T "Empty & Empty"                  ' expect: []
T "Empty-Empty"                    ' expect: Integer 0
T "Empty*5"                        ' expect: Integer 0
T "~2~+~3~"                        ' expect: [23]
T "~2~+3"                          ' expect: Double 5
T "~2~-~3~"                        ' expect: Double -1
T "~2~*~3~"                        ' expect: Double 6
T "~6~/~3~"                        ' expect: Double 2
T "~7~\~2~"                        ' expect: Long 3
T "~7~ Mod ~4~"                    ' expect: Long 3
T "~2~^~3~"                        ' expect: Double 8
T "-~5~"                           ' expect: Double -5
T "~a~+1"                          ' expect: error 13
T "~a~-~b~"                        ' expect: error 13
T "~~+1"                           ' expect: error 13
T "~ 5 ~+1"                        ' expect: Double 6
T "~5-~+0"                         ' expect: Double -5
T "~1e2~+0"                        ' expect: Double 100
T "~&H10~+0"                       ' expect: Double 16
T "~&hFFFF~+0"                     ' expect: Double -1
T "~&HFFFF&~+0"                    ' expect: Double 65535
T "~&O17~+0"                       ' expect: Double 15
T "~(5)~+0"                        ' expect: Double -5
T "~$1,234.50~+0"                  ' expect: Double 1234.5
T "~1 2~+0"                        ' expect: error 13
T "~True~+0"                       ' expect: error 13
T "True+~5~"                       ' expect: Double 4
T "~5~+True"                       ' expect: Double 4
T "1 & 2"                          ' expect: [12]
T "1.5 & ~~"                       ' expect: [1.5]
T "True & ~~"                      ' expect: [True]
T "Null & ~a~"                     ' expect: [a]
T "~a~ & Null"                     ' expect: [a]
T "Null & Null"                    ' expect: Null
T "Null & Empty"                   ' expect: []
T "#1/1/2000# & ~~"                ' expect: [1/1/2000]
T "Null+1"                         ' expect: Null
T "1-Null"                         ' expect: Null
T "Null*~a~"                       ' expect: Null
T "~a~+Null"                       ' expect: Null
T "-Null"                          ' expect: Null
T "Null/0"                         ' expect: Null
T "Null\0"                         ' expect: Null
T "Null Mod 0"                     ' expect: Null
T "Null^2"                         ' expect: Null
T "1/0"                            ' expect: error 11
T "0/0"                            ' expect: error 6
T "1\0"                            ' expect: error 11
T "1 Mod 0"                        ' expect: error 11
T "1\0.4"                          ' expect: error 11
T "1 Mod 0.5"                      ' expect: error 11
T "1\Empty"                        ' expect: error 11
T "1.5\1"                          ' expect: Long 2
T "2.5\1"                          ' expect: Long 2
T "-7\2"                           ' expect: Integer -3
T "7\-2"                           ' expect: Integer -3
T "-7 Mod 3"                       ' expect: Integer -1
T "7 Mod -3"                       ' expect: Integer 1
T "10 Mod 3.7"                     ' expect: Long 2
T "12.6 Mod 5"                     ' expect: Long 3
T "2147483648\1"                   ' expect: error 6
T "2147483648 Mod 3"               ' expect: error 6
T "-2147483648 \ -1"               ' expect: error 6
T "32768\1"                        ' expect: Long 32768
T "True\2"                         ' expect: Integer 0
T "True Mod 2"                     ' expect: Integer -1
T "CLng(7)\2"                      ' expect: Long 3
T "2^0.5"                          ' expect: Double 1.4142135623731
T "(-8)^(1/3)"                     ' expect: error 5
T "0^-1"                           ' expect: error 5
T "0^0"                            ' expect: Double 1
T "(-2)^3"                         ' expect: Double -8
T "10^308*10"                      ' expect: error 6
T "1e308*10"                       ' expect: error 6
T "10^400"                         ' expect: error 6
T "#1/1/2000#+1"                   ' expect: Date 1/2/2000
T "1+#1/1/2000#"                   ' expect: Date 1/2/2000
T "#1/2/2000#-1"                   ' expect: Date 1/1/2000
T "#1/2/2000#-#1/1/2000#"          ' expect: Double 1
T "#1/1/2000#+#1/1/1900#"          ' expect: Date 1/3/2000
T "#1/1/2000#*2"                   ' expect: Double 73052
T "#1/1/2000#/2"                   ' expect: Double 18263
T "-#1/1/2000#"                    ' expect: Date 12/28/1799
T "#1/1/2000#\1"                   ' expect: Long 36526
T "#1/1/2000# Mod 7"               ' expect: Long 0
T "#1/1/2000#^1"                   ' expect: Double 36526
T "#12/31/9999#+1"                 ' expect: error 6
T "~1/1/2000~+1"                   ' expect: error 13
T "#1/1/2000#+~1~"                 ' expect: Date 1/2/2000
T "1 And 2"                        ' expect: Integer 0
T "5 And 3"                        ' expect: Integer 1
T "5 Or 3"                         ' expect: Integer 7
T "5 Xor 3"                        ' expect: Integer 6
T "5 Eqv 3"                        ' expect: Integer -7
T "5 Imp 3"                        ' expect: Integer -5
T "True And 5"                     ' expect: Integer 5
T "True And True"                  ' expect: Boolean True
T "Not 5"                          ' expect: Integer -6
T "Not 5.5"                        ' expect: Long -7
T "Not -1"                         ' expect: Integer 0
T "Not True"                       ' expect: Boolean False
T "Not Empty"                      ' expect: Integer -1
T "Not Null"                       ' expect: Null
T "Not ~5~"                        ' expect: Long -6
T "Not ~True~"                     ' expect: Boolean False
T "Not ~abc~"                      ' expect: error 13
T "~5~ And 3"                      ' expect: Long 1
T "~abc~ And 1"                    ' expect: error 13
T "~True~ And True"                ' expect: Boolean True
T "1.5 And 3"                      ' expect: Long 2
T "2.5 Or 0"                       ' expect: Long 2
T "2147483648 And 1"               ' expect: error 6
T "CLng(5) And 3"                  ' expect: Long 1
T "Empty And 5"                    ' expect: Integer 0
T "Empty Or 5"                     ' expect: Integer 5
T "Empty Or Empty"                 ' expect: Integer 0
T "Empty And True"                 ' expect: Integer 0
T "#1/1/2000# And 1"               ' expect: Long 0
T "CCur(5) And 3"                  ' expect: Long 1
T "True And Null"                  ' expect: Null
T "False And Null"                 ' expect: Boolean False
T "Null And False"                 ' expect: Boolean False
T "0 And Null"                     ' expect: Integer 0
T "5 And Null"                     ' expect: Null
T "True Or Null"                   ' expect: Boolean True
T "Null Or True"                   ' expect: Boolean True
T "False Or Null"                  ' expect: Null
T "-1 Or Null"                     ' expect: Integer -1
T "5 Or Null"                      ' expect: Null
T "Null Xor True"                  ' expect: Null
T "Null Eqv False"                 ' expect: Null
T "True Imp Null"                  ' expect: Null
T "False Imp Null"                 ' expect: Boolean True
T "Null Imp True"                  ' expect: Boolean True
T "Null Imp False"                 ' expect: Null
T "Null Imp Null"                  ' expect: Null
T "0 Imp Null"                     ' expect: Integer -1
T "Null Imp -1"                    ' expect: Integer -1
T "Nothing Is Nothing"             ' expect: Boolean True
T "1 Is 1"                         ' expect: error 424
T "Nothing Is 1"                   ' expect: error 424
T "Nothing + 1"                    ' expect: error 91
T "Nothing = 1"                    ' expect: error 91
T "Nothing & ~~"                   ' expect: error 91
T "Array(1) + 1"                   ' expect: error 13
T "Array(1) & ~~"                  ' expect: error 13
T "Array(1) = Array(1)"            ' expect: error 13
T "Not Array(1)"                   ' expect: error 13
T "-Array(1)"                      ' expect: error 13
T "Array(1) And 1"                 ' expect: error 13
T "1=1.0"                          ' expect: Boolean True
T "1=True"                         ' expect: Boolean False
T "-1=True"                        ' expect: Boolean True
T "0=False"                        ' expect: Boolean True
T "0=Empty"                        ' expect: Boolean True
T "~~=Empty"                       ' expect: Boolean True
T "~a~>Empty"                      ' expect: Boolean True
T "Empty<1"                        ' expect: Boolean True
T "Empty=Empty"                    ' expect: Boolean True
T "Empty=False"                    ' expect: Boolean True
T "Null=Null"                      ' expect: Null
T "Null=1"                         ' expect: Null
T "1<>Null"                        ' expect: Null
T "~a~=~A~"                        ' expect: Boolean False
T "~a~<~B~"                        ' expect: Boolean False
T "~B~<~a~"                        ' expect: Boolean True
T "~abc~<~abd~"                    ' expect: Boolean True
T "~ab~<~abc~"                     ' expect: Boolean True
T "~~<~a~"                         ' expect: Boolean True
T "~10~<~9~"                       ' expect: Boolean True
T "10<~9~"                         ' expect: Boolean False
T "~10~<9"                         ' expect: Boolean False
T "~1~=1"                          ' expect: Boolean True
T "~1.0~=1"                        ' expect: Boolean True
T "~abc~=1"                        ' expect: error 13
T "1=~abc~"                        ' expect: error 13
T "CLng(1)=~1~"                    ' expect: Boolean True
T "CLng(1)=~1.0~"                  ' expect: Boolean False
T "CStr(1)=1"                      ' expect: Boolean True
T "CStr(1)=CLng(1)"                ' expect: Boolean False
T "CStr(1)>CLng(2)"                ' expect: Boolean True
T "CLng(2)<CStr(1)"                ' expect: Boolean True
T "CStr(~abc~)=1"                  ' expect: error 13
T "CStr(~abc~)=CLng(1)"            ' expect: Boolean False
T "#1/1/2000#=36526"               ' expect: Boolean True
T "#1/1/2000#<#1/2/2000#"          ' expect: Boolean True
T "CCur(1.5)=1.5"                  ' expect: Boolean True
T "CSng(0.1)=0.1"                  ' expect: Boolean False
T "0.1+0.2=0.3"                    ' expect: Boolean False
T "1 + 1"                          ' expect: Integer 2
T "200 * 200"                      ' expect: Long 40000
T "7 / 2"                          ' expect: Double 3.5
T "7 \ 2"                          ' expect: Integer 3
T "3.5 \ 1"                        ' expect: Long 4
T "-2 ^ 2"                         ' expect: Double -4
T "2 ^ -1"                         ' expect: Double 0.5
T "2 ^ 3 ^ 2"                      ' expect: Double 64
T "-32768"                         ' expect: Long -32768
T "CCur(~1.5~) + 1"                ' expect: Currency 2.5
T "CCur(2) * 1.5"                  ' expect: Double 3
T "CCur(1.00005)"                  ' expect: Currency 1
T "#1/3/2000# - #1/1/2000#"        ' expect: Double 2
T "1 + Null"                       ' expect: Null
T "1 + 2 & 3 * 4"                  ' expect: [312]
T "12 \ 5 * 2"                     ' expect: Integer 1
T "1e308 * 1"                      ' expect: Double 1E+308
T "0.00001"                        ' expect: Double 1E-05
T "123456789012345678"             ' expect: Double 1.23456789012346E+17
T "~1,234.5~ * 1"                  ' expect: Double 1234.5
T "~$3~ * 1"                       ' expect: Double 3
T "- ~4~"                          ' expect: Double -4
T "True Xor False"                 ' expect: Boolean True
T "~1~ Or 2"                       ' expect: Long 3
T "Null And 0"                     ' expect: Integer 0
