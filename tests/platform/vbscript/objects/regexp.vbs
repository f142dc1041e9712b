Dim r, m, ms : Set r = New RegExp
r.Pattern = "(a|b)(c)?" : r.Global = True
Set ms = r.Execute("acbXa")
WScript.Echo ms.Count, ms(0), ms.Item(1).Value, ms(2).FirstIndex, ms(0).Length, IsEmpty(ms(1).SubMatches(1)), ms(0).SubMatches.Count ' expect: 3 ac b 4 2 True 2
For Each m In ms : WScript.Echo m & ":" & m.SubMatches(0) : Next
' expect: ac:a
' expect: b:b
' expect: a:a
Sub T(pattern, text)
  r.Pattern = pattern
  If r.Test(text) Then WScript.Echo r.Replace(text, "<$&>") Else WScript.Echo "-"
End Sub
T "^\s*(\d{1,3})(?:\.(\d{1,3})){3}$", "10.0.0.1"    ' expect: <10.0.0.1>
T "a+?", "aaa"                                      ' expect: <a><a><a>
T "a{2,}", "a aa aaaa"                              ' expect: a <aa> <aaaa>
T "x(?=y)", "xy xz"                                 ' expect: <x>y xz
T "x(?!y)", "xy xz"                                 ' expect: xy <x>z
T "(\w)\1", "hello"                                 ' expect: he<ll>o
T "\bcat\b", "cat concat cat"                       ' expect: <cat> concat <cat>
T "[^a-c\d]+", "abc123xyz"                          ' expect: abc123<xyz>
T "(z)|(q)", "abc"                                  ' expect: -
T "\u0041\x42\t?", "AB"                             ' expect: <AB>
T "(?:ab)*c", "ababc"                               ' expect: <ababc>
T "(a*)*b", "aab"                                   ' expect: <aab>
T "^b", "a" & vbLf & "b"                            ' expect: -
r.MultiLine = True : r.Pattern = "^b" : WScript.Echo r.Test("a" & vbLf & "b") ' expect: True
r.IgnoreCase = True : T "ABC[x-z]", "abcY"          ' expect: <abcY>
r.Pattern = "(\w+) (\w+)" : WScript.Echo r.Replace("one two", "$2-$1-$$-$9-$`|$'") ' expect: two-one-$-$9-|
Function Up(match, g, pos, all) : Up = UCase(match) & pos : End Function
r.Pattern = "(o)" : WScript.Echo r.Replace("foo", GetRef("Up")) ' expect: fO1O2
On Error Resume Next
Sub Try(pattern) : On Error Resume Next : r.Pattern = pattern : r.Test "x" : WScript.Echo Err.Number : End Sub
Try "*a"                                            ' expect: 5018
Try "[a"                                            ' expect: 5019
Try "(a"                                            ' expect: 5020
Try "[z-a]"                                         ' expect: 5021
Try "a)"                                            ' expect: 5017
