Dim foo, bar : foo = "1" : bar = 1
WScript.Echo "1" = 1, "1" = bar, foo = 1, foo = bar, foo > bar ' expect: True True True False True
WScript.Echo CLng(5) = "5", "5" = CLng(5), foo = CLng(1) ' expect: True True False
WScript.Echo Empty = "", Empty = 0, Empty = Empty, IsNull(Null = Null) ' expect: True True True True
WScript.Echo "a" < "B", "a" = "A", "abc" > "ab", "" < "a" ' expect: False False True True
WScript.Echo True = -1, #1/1/2000# = 36526, 0.1 + 0.2 = 0.3 ' expect: True True False
WScript.Echo Not 1 = 2, 1 = 1 = True, 3 > 2 > 1     ' expect: True True False
WScript.Echo Nothing Is Nothing                     ' expect: True
Dim x : x = bar = 1 : WScript.Echo x                ' expect: True
Select Case foo : Case 1 : WScript.Echo "hard" : End Select ' expect: hard
Select Case foo : Case bar : WScript.Echo "no" : Case Else : WScript.Echo "soft" : End Select ' expect: soft
