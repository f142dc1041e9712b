' table: functions of texts
T "Len(~abc~)"                                   ' expect: Long 3
T "Len(~~)"                                      ' expect: Long 0
T "Len(123)"                                     ' expect: Long 3
T "Len(Null)"                                    ' expect: Null
T "Len(Empty)"                                   ' expect: Long 0
T "Len(True)"                                    ' expect: Long 4
T "LenB(~abc~)"                                  ' expect: Long 6
T "Left(~abc~,2)"                                ' expect: [ab]
T "Left(~abc~,0)"                                ' expect: []
T "Left(~abc~,9)"                                ' expect: [abc]
T "Left(~abc~,-1)"                               ' expect: error 5
T "Left(Null,1)"                                 ' expect: Null
T "Left(~abc~,1.5)"                              ' expect: [ab]
T "Left(~abc~,2.5)"                              ' expect: [ab]
T "Left(~abc~,Null)"                             ' expect: error 94
T "Left(~abc~,~x~)"                              ' expect: error 13
T "Left(12345,2)"                                ' expect: [12]
T "Right(~abc~,2)"                               ' expect: [bc]
T "Right(~abc~,0)"                               ' expect: []
T "Right(~abc~,10)"                              ' expect: [abc]
T "Right(~abc~,-1)"                              ' expect: error 5
T "Right(Null,1)"                                ' expect: Null
T "Mid(~abc~,2)"                                 ' expect: [bc]
T "Mid(~abc~,2,1)"                               ' expect: [b]
T "Mid(~abc~,4)"                                 ' expect: []
T "Mid(~abc~,10)"                                ' expect: []
T "Mid(~abc~,0)"                                 ' expect: error 5
T "Mid(~abc~,-1)"                                ' expect: error 5
T "Mid(~abc~,1,-1)"                              ' expect: error 5
T "Mid(~abc~,1,0)"                               ' expect: []
T "Mid(~abc~,2,100)"                             ' expect: [bc]
T "Mid(Null,1)"                                  ' expect: Null
T "Mid(~abc~,Null)"                              ' expect: error 94
T "InStr(~abc~,~b~)"                             ' expect: Long 2
T "InStr(~abc~,~x~)"                             ' expect: Long 0
T "InStr(1,~abc~,~B~)"                           ' expect: Long 0
T "InStr(1,~abc~,~B~,1)"                         ' expect: Long 2
T "InStr(0,~abc~,~b~)"                           ' expect: error 5
T "InStr(-1,~abc~,~b~)"                          ' expect: error 5
T "InStr(4,~abc~,~b~)"                           ' expect: Long 0
T "InStr(4,~abc~,~~)"                            ' expect: Long 0
T "InStr(3,~abc~,~~)"                            ' expect: Long 3
T "InStr(~abc~,~~)"                              ' expect: Long 1
T "InStr(~~,~a~)"                                ' expect: Long 0
T "InStr(~~,~~)"                                 ' expect: Long 0
T "InStr(Null,~a~)"                              ' expect: Null
T "InStr(~a~,Null)"                              ' expect: Null
T "InStr(Null,~abc~,~b~)"                        ' expect: error 94
T "InStr(~abc~,~B~,1)"                           ' expect: error 13
T "InStr(2,~abcabc~,~a~)"                        ' expect: Long 4
T "InStrRev(~abcabc~,~b~)"                       ' expect: Long 5
T "InStrRev(~abcabc~,~b~,4)"                     ' expect: Long 2
T "InStrRev(~abcabc~,~bc~,5)"                    ' expect: Long 2
T "InStrRev(~abcabc~,~B~,-1,1)"                  ' expect: Long 5
T "InStrRev(~abc~,~~)"                           ' expect: Long 3
T "InStrRev(~abc~,~~,2)"                         ' expect: Long 2
T "InStrRev(~~,~a~)"                             ' expect: Long 0
T "InStrRev(~abc~,~a~,0)"                        ' expect: error 5
T "InStrRev(~abc~,~a~,-2)"                       ' expect: error 5
T "InStrRev(~abc~,~a~,10)"                       ' expect: Long 0
T "InStrRev(Null,~a~)"                           ' expect: Null
T "InStrRev(~a~,Null)"                           ' expect: Null
T "Replace(~abcabc~,~b~,~x~)"                    ' expect: [axcaxc]
T "Replace(~abcabc~,~b~,~x~,3)"                  ' expect: [caxc]
T "Replace(~abcabc~,~b~,~x~,1,1)"                ' expect: [axcabc]
T "Replace(~abcabc~,~b~,~x~,1,0)"                ' expect: [abcabc]
T "Replace(~abcabc~,~b~,~x~,3,0)"                ' expect: [cabc]
T "Replace(~abcabc~,~B~,~x~,1,-1,1)"             ' expect: [axcaxc]
T "Replace(~abc~,~~,~x~)"                        ' expect: [abc]
T "Replace(~~,~a~,~b~)"                          ' expect: []
T "Replace(~abc~,~b~,~~)"                        ' expect: [ac]
T "Replace(Null,~a~,~b~)"                        ' expect: error 94
T "Replace(~abc~,Null,~b~)"                      ' expect: error 94
T "Replace(~abc~,~b~,Null)"                      ' expect: error 94
T "Replace(~abc~,~b~,~x~,0)"                     ' expect: error 5
T "Replace(~abc~,~b~,~x~,10)"                    ' expect: []
T "Replace(~abc~,~b~,~x~,1,-2)"                  ' expect: error 5
T "Replace(~aaa~,~aa~,~b~)"                      ' expect: [ba]
T "Split(~a b c~)"                               ' expect: ([a]|[b]|[c]|)
T "Split(~a,b,c~,~,~)"                           ' expect: ([a]|[b]|[c]|)
T "Split(~a,b,c~,~,~,2)"                         ' expect: ([a]|[b,c]|)
T "Split(~a,b,c~,~,~,1)"                         ' expect: ([a,b,c]|)
T "Split(~a,b,c~,~,~,0)"                         ' expect: ()
T "Split(~a,b,c~,~,~,-1)"                        ' expect: ([a]|[b]|[c]|)
T "Split(~a,b,c~,~,~,-2)"                        ' expect: error 5
T "Split(~aXbxc~,~x~,-1,1)"                      ' expect: ([a]|[b]|[c]|)
T "Split(~~,~a~)"                                ' expect: ()
T "UBound(Split(~~))"                            ' expect: Long -1
T "Split(~abc~,~~)"                              ' expect: ([abc]|)
T "Split(~,a,~,~,~)"                             ' expect: ([]|[a]|[]|)
T "Split(Null)"                                  ' expect: error 94
T "Split(~a--b~,~--~)"                           ' expect: ([a]|[b]|)
T "Join(Array(~a~,~b~))"                         ' expect: [a b]
T "Join(Array(~a~,~b~),~~)"                      ' expect: [ab]
T "Join(Array(~a~,~b~),~, ~)"                    ' expect: [a, b]
T "Join(Array())"                                ' expect: []
T "Join(Array(1,True,Empty))"                    ' expect: [1 True ]
T "Join(Array(Null))"                            ' expect: error 94
T "Join(~a~)"                                    ' expect: error 13
T "Join(Array(Array(1)))"                        ' expect: error 13
T "Filter(Array(~abc~,~bcd~,~xyz~),~b~)"         ' expect: ([abc]|[bcd]|)
T "Filter(Array(~abc~,~bcd~,~xyz~),~b~,False)"   ' expect: ([xyz]|)
T "Filter(Array(~abc~,~xyz~),~B~,True,1)"        ' expect: ([abc]|)
T "UBound(Filter(Array(~a~),~q~))"               ' expect: Long -1
T "Filter(~a~,~b~)"                              ' expect: error 13
T "LCase(~AbC~)"                                 ' expect: [abc]
T "UCase(~abc~)"                                 ' expect: [ABC]
T "LCase(Null)"                                  ' expect: Null
T "UCase(12)"                                    ' expect: [12]
T "Trim(~  a b  ~)"                              ' expect: [a b]
T "LTrim(~  a ~)"                                ' expect: [a ]
T "RTrim(~ a  ~)"                                ' expect: [ a]
T "Trim(Null)"                                   ' expect: Null
T "Space(3)"                                     ' expect: [   ]
T "Space(0)"                                     ' expect: []
T "Space(-1)"                                    ' expect: error 5
T "String(3,~ab~)"                               ' expect: [aaa]
T "String(3,65)"                                 ' expect: [AAA]
T "String(2,321)"                                ' expect: [AA]
T "String(0,~a~)"                                ' expect: []
T "String(-1,~a~)"                               ' expect: error 5
T "String(2,~~)"                                 ' expect: error 5
T "String(2,Null)"                               ' expect: Null
T "String(Null,~a~)"                             ' expect: Null
T "StrComp(~a~,~b~)"                             ' expect: Integer -1
T "StrComp(~b~,~a~)"                             ' expect: Integer 1
T "StrComp(~a~,~a~)"                             ' expect: Integer 0
T "StrComp(~a~,~A~)"                             ' expect: Integer 1
T "StrComp(~a~,~A~,1)"                           ' expect: Integer 0
T "StrComp(Null,~a~)"                            ' expect: Null
T "StrComp(~a~,~b~,5)"                           ' expect: error 5
T "StrReverse(~abc~)"                            ' expect: [cba]
T "StrReverse(~~)"                               ' expect: []
T "StrReverse(Null)"                             ' expect: error 94
T "Asc(~A~)"                                     ' expect: Integer 65
T "Asc(~~)"                                      ' expect: error 5
T "Asc(Null)"                                    ' expect: error 94
T "AscW(~A~)"                                    ' expect: Integer 65
T "AscW(ChrW(&H20AC))"                           ' expect: Integer 8364
T "AscW(ChrW(&HFFFF))"                           ' expect: Integer -1
T "AscB(~A~)"                                    ' expect: Byte 65
T "Chr(65)"                                      ' expect: [A]
T "Chr(256)"                                     ' expect: error 5
T "Chr(-1)"                                      ' expect: error 5
T "Chr(~65~)"                                    ' expect: [A]
T "Chr(Null)"                                    ' expect: error 94
T "AscW(ChrW(-1))"                               ' expect: Integer -1
T "ChrW(65536)"                                  ' expect: error 5
T "LeftB(~abc~,2)"                               ' expect: [a]
T "RightB(~abc~,2)"                              ' expect: [c]
T "MidB(~abc~,3,2)"                              ' expect: [b]
T "InStrB(~abc~,~b~)"                            ' expect: Long 3
T "LenB(ChrB(65))"                               ' expect: Long 1
T "Escape(~a b+c/d@e*f_g-h.i~)"                  ' expect: [a%20b+c/d@e*f_g-h.i]
T "Escape(~é~)"                                  ' expect: [%E9]
T "Escape(~€~)"                                  ' expect: [%u20AC]
T "Unescape(~a%20b%u20AC%E9~)"                   ' expect: [a b€é]
T "Unescape(~%zz%~)"                             ' expect: [%zz%]
T "Hex(255)"                                     ' expect: [FF]
T "Hex(-1)"                                      ' expect: [FFFF]
T "Hex(CLng(-1))"                                ' expect: [FFFFFFFF]
T "Hex(65536)"                                   ' expect: [10000]
T "Hex(Empty)"                                   ' expect: [0]
T "Hex(1.5)"                                     ' expect: [2]
T "Hex(2.5)"                                     ' expect: [2]
T "Hex(~15~)"                                    ' expect: [F]
T "Hex(Null)"                                    ' expect: Null
T "Hex(4294967296)"                              ' expect: error 6
T "Hex(-1.0)"                                    ' expect: [FFFFFFFF]
T "Oct(8)"                                       ' expect: [10]
T "Oct(-1)"                                      ' expect: [177777]
T "Oct(CLng(-1))"                                ' expect: [37777777777]
T "Oct(Null)"                                    ' expect: Null
T "Hex(True)"                                    ' expect: [FFFF]
T "Hex(CByte(200))"                              ' expect: [C8]
T "Hex(~x~)"                                     ' expect: error 13
T "Len()"                                        ' expect: error 450
T "Len(~a~,~b~)"                                 ' expect: error 450
T "Foo(~a~)"                                     ' expect: error 13
T "Mid(~a~)"                                     ' expect: error 450
