WScript.Echo Len("abc"), Len(12345), LenB("ab"), Left("abc", 2), Right("abc", 9), Mid("abcdef", 2, 3), Mid("ab", 5) & "."
' expect: 3 5 4 ab abc bcd .
WScript.Echo InStr("abcabc", "c"), InStr(4, "abcabc", "c"), InStr(1, "ABC", "b", 1), InStr("", "a"), InStr(2, "abc", ""), InStr(9, "a", "a")
' expect: 3 6 2 0 2 0
WScript.Echo InStrRev("abcabc", "b"), InStrRev("abcabc", "b", 4), InStrRev("abc", ""), InStrRev("abc", "C", -1, 1)
' expect: 5 2 3 3
WScript.Echo Replace("aXbXc", "X", "-"), Replace("aXbXc", "X", "-", 3), Replace("aXbXc", "x", "-", 1, 1, 1), Replace("abc", "", "z"), Replace("aaa", "a", "b", 1, 0)
' expect: a-b-c b-c a-bXc abc aaa
WScript.Echo Join(Split("a,b,c", ","), "|"), UBound(Split("", ",")), Join(Split("a b c"), "+"), Join(Split("a,b,c", ",", 2), "|"), UBound(Split("abc", ""))
' expect: a|b|c -1 a+b+c a|b,c 0
WScript.Echo Join(Filter(Array("one", "two", "three"), "o")), Join(Filter(Array("one", "two", "three"), "O", False, 1))
' expect: one two three
WScript.Echo LCase("ÄB"), UCase("äb"), "[" & Trim("  x ") & "][" & LTrim("  x ") & "][" & RTrim("  x ") & "]"
' expect: äb ÄB [x][x ][  x]
WScript.Echo "[" & Space(3) & "]" & String(3, "ab") & String(2, 65), StrReverse("abc"), StrComp("a", "B"), StrComp("a", "A", 1), StrComp("b", "a")
' expect: [   ]aaaAA cba 1 0 1
WScript.Echo Asc("A"), Chr(66), AscW(ChrW(8364)), Hex(255), Hex(-1), Hex(CLng(-1)), Oct(8), Hex(Empty)
' expect: 65 B 8364 FF FFFF FFFFFFFF 10 0
WScript.Echo Escape("a b" & ChrW(8364) & "é"), Unescape("a%20b%u20AC")
' expect: a%20b%u20AC%E9 a b€
WScript.Echo IsNull(Len(Null)), IsNull(Left(Null, 1)), IsNull(UCase(Null)), IsNull(StrComp(Null, "a")), IsNull(InStr(Null, "a"))
' expect: True True True True True
WScript.Echo MidB("abc", 3, 2), LeftB("abc", 2), AscB("A"), TypeName(ChrB(65))
' expect: b a 65 Byte()
