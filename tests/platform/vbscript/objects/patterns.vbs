Dim r, m, x, s : Set r = New RegExp
WScript.Echo "[" & r.Pattern & "]", r.Global, r.IgnoreCase, r.MultiLine, TypeName(r) ' expect: [] False False False IRegExp2
Sub T(p, flags, text)
  On Error Resume Next
  r.Pattern = p : r.Global = InStr(flags, "g") > 0 : r.IgnoreCase = InStr(flags, "i") > 0 : r.Multiline = InStr(flags, "m") > 0
  Dim ms, i, sm, out : Set ms = r.Execute(text)
  If Err.Number Then WScript.Echo "error", Err.Number : Exit Sub
  out = ms.Count
  For Each i In ms : out = out & " " & i.FirstIndex & ":" & i.Length & "<" & i.Value & ">"
    For Each sm In i.SubMatches : out = out & "(" & sm & ")" : Next
  Next
  WScript.Echo out
End Sub
Sub P(pat, flags, text, by)
  r.Pattern = pat : r.Global = InStr(flags, "g") > 0 : r.IgnoreCase = InStr(flags, "i") > 0 : r.Multiline = InStr(flags, "m") > 0
  WScript.Echo "[" & r.Replace(text, by) & "]"
End Sub
T "a", "", "banana" ' expect: 1 1:1<a>
T "a", "g", "banana" ' expect: 3 1:1<a> 3:1<a> 5:1<a>
T "A", "i", "banana" ' expect: 1 1:1<a>
T "(a)(n)?", "g", "banana" ' expect: 3 1:2<an>(a)(n) 3:2<an>(a)(n) 5:1<a>(a)()
T "x*", "g", "axb" ' expect: 4 0:0<> 1:1<x> 2:0<> 3:0<>
T "^b", "gm", "b" & vbLf & "b" ' expect: 2 0:1<b> 2:1<b>
T "b$", "g", "b" & vbLf & "b" ' expect: 1 2:1<b>
T "b$", "gm", "b" & vbLf & "b" ' expect: 2 0:1<b> 2:1<b>
T ".+", "g", "ab" & vbLf & "cd" ' expect: 2 0:2<ab> 3:2<cd>
T "a{2}", "g", "aaaaa" ' expect: 2 0:2<aa> 2:2<aa>
T "a{2,}", "g", "aaaaa" ' expect: 1 0:5<aaaaa>
T "a{2,3}?", "g", "aaaaa" ' expect: 2 0:2<aa> 2:2<aa>
T "a+?", "", "aaa" ' expect: 1 0:1<a>
T "a??b", "", "ab" ' expect: 1 0:2<ab>
T "(?:ab)+", "", "ababx" ' expect: 1 0:4<abab>
T "a(?=b)", "g", "abac" ' expect: 1 0:1<a>
T "a(?!b)", "g", "abac" ' expect: 1 2:1<a>
T "(.)\1", "g", "aabbc" ' expect: 2 0:2<aa>(a) 2:2<bb>(b)
T "[abc]+", "", "xxcabx" ' expect: 1 2:3<cab>
T "[^abc]+", "", "abxyc" ' expect: 1 2:2<xy>
T "[a-c-]+", "", "x-a-" ' expect: 1 1:3<-a->
T "[\]\\]+", "", "a]\b" ' expect: 1 1:2<]\>
T "\d+\D\w\W\s\S", "", "12ab-" & " x" ' expect: 1 0:7<12ab- x>
T "\bfoo\b", "g", "foo foobar foo" ' expect: 2 0:3<foo> 11:3<foo>
T "\Boo", "", "foo" ' expect: 1 1:2<oo>
T "\x41\u0042\103", "", "ABC" ' expect: 1 0:3<ABC>
T "a|b|", "g", "ab" ' expect: 3 0:1<a> 1:1<b> 2:0<>
T "(a|ab)(c|bcd)(d*)", "", "abcd" ' expect: 1 0:4<abcd>(a)(bcd)()
T "(z)((a+)?(b+)?(c))*", "", "zaacbbbcac" ' expect: 1 0:10<zaacbbbcac>(z)(ac)(a)()(c)
T "(", "", "a" ' expect: error 5020
T "a)", "", "a" ' expect: error 5017
T "[a", "", "a" ' expect: error 5019
T "*a", "", "a" ' expect: error 5018
T "a**", "", "a" ' expect: error 5018
T "+", "", "a" ' expect: error 5018
T "[z-a]", "", "a" ' expect: error 5021
T "(?<n>a)", "", "a" ' expect: error 5017
T "a{", "", "a{" ' expect: 1 0:2<a{>
T "a{x}", "", "a{x}" ' expect: 1 0:4<a{x}>
T "\", "", "a" ' expect: error 5017
T "", "g", "ab" ' expect: 3 0:0<> 1:0<> 2:0<>
T "a{0}", "", "a" ' expect: 1 0:0<>
T "[\d-x]+", "", "1-x" ' expect: 1 0:3<1-x>
T "É", "i", "é" ' expect: 1 0:1<é>
T "\.", "g", "a.b." ' expect: 2 1:1<.> 3:1<.>
T "^$", "gm", vbLf & vbLf ' expect: 3 0:0<> 1:0<> 2:0<>
P "a", "", "banana", "o" ' expect: [bonana]
P "a", "g", "banana", "o" ' expect: [bonono]
P "(\w+) (\w+)", "", "hello world", "$2 $1" ' expect: [world hello]
P "a", "g", "xay", "[$&]" ' expect: [x[a]y]
P "a", "", "xay", "[$`|$']" ' expect: [x[x|y]y]
P "a", "", "a", "$$" ' expect: [$]
P "a", "", "a", "$1$x$" ' expect: [$1$x$]
P "(a)(b)?", "", "a", "[$1$2]" ' expect: [[a]]
P "(a)", "", "ab", "$01$10" ' expect: [aa0b]
P "x", "g", "abc", "y" ' expect: [abc]
P "", "g", "ab", "-" ' expect: [-a-b-]
P "\s+", "g", " a  b ", "" ' expect: [ab]
P "A", "gi", "aA", "x" ' expect: [xx]
r.Pattern = "(\d)(\d)" : Set m = r.Execute("a12b")
WScript.Echo m.Count, m(0), m.Item(0).Value, m(0).SubMatches(1), m(0).SubMatches.Count, m(0).FirstIndex, m(0).Length, TypeName(m), TypeName(m(0)), TypeName(m(0).SubMatches) ' expect: 1 12 12 2 2 1 2 IMatchCollection2 IMatch2 ISubMatches
WScript.Echo m(0) + 1, "<" & m(0) & ">" ' expect: 13 <12>
WScript.Echo r.Test("99"), r.Test("9") ' expect: True False
Set x = CreateObject("VBScript.RegExp") : x.Pattern = "q" : WScript.Echo x.Test("aqb") ' expect: True
On Error Resume Next
x = m(5) : WScript.Echo Err.Number : Err.Clear ' expect: 5
x = m(0).SubMatches(9) : WScript.Echo Err.Number : Err.Clear ' expect: 5
r.NoProp = 1 : WScript.Echo Err.Number : Err.Clear ' expect: 438
r.Pattern = Null : WScript.Echo Err.Number : Err.Clear ' expect: 94
r.Test : WScript.Echo Err.Number : Err.Clear ' expect: 450
r.Pattern = "(?!a)b|c$" : WScript.Echo r.Test("xb"), r.Test("c"), r.Test("cd") ' expect: True True False
