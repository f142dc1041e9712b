Sub SetIt : gg = 5 : End Sub
SetIt : WScript.Echo TypeName(gg) ' expect: Empty
gg = 1 : SetIt : WScript.Echo gg ' expect: 5
Sub ReadIt : WScript.Echo "[" & later & "]" : End Sub
ReadIt : later = 3 : ReadIt
' expect: []
' expect: [3]
Sub ForIt : For kk = 1 To 2 : Next : End Sub
ForIt : WScript.Echo IsEmpty(kk) ' expect: True
For kk = 5 To 6 : ForIt : WScript.Echo kk : Exit For : Next ' expect: 3
Sub Inc(v) : v = v + 1 : End Sub
Sub ReadQ : WScript.Echo qq : End Sub
Inc qq : WScript.Echo qq : ReadQ
' expect: 1
' expect: 1
ExecuteGlobal "eg = 7" : Sub ReadEg : WScript.Echo eg : End Sub : ReadEg ' expect: 7
Sub Ex : Execute "lo = 1" : WScript.Echo lo : End Sub : Ex : WScript.Echo IsEmpty(lo) ' expect: 1
' expect: True
Sub ExG : ExecuteGlobal "glo = 1" : WScript.Echo glo : End Sub : ExG : WScript.Echo glo ' expect: 1
' expect: 1
If True Then cond = 4
Sub ReadC : WScript.Echo cond : cond = 6 : End Sub : ReadC : WScript.Echo cond
' expect: 4
' expect: 6
Set ob = CreateObject("Scripting.Dictionary") : Sub UseOb : ob.Add 1, 2 : WScript.Echo ob.Count : End Sub : UseOb ' expect: 1
ReDim ra(2) : Sub UseRa : WScript.Echo UBound(ra) : ReDim ra(7) : End Sub : UseRa : WScript.Echo UBound(ra)
' expect: 2
' expect: 7
ExecuteGlobal "Function NewF : NewF = 3 : End Function : Sub NewS(x) : WScript.Echo x : End Sub : Class NewC : Public q : End Class : Const NewK = 8"
WScript.Echo NewF, TypeName(NewF), NewF + 1, NewF(), TypeName(New NewC), NewK ' expect: 3 Integer 4 3 NewC 8
NewS 4 : Call NewS(5) : x = NewF : WScript.Echo x ' expect: 4
' expect: 5
' expect: 3
Sub InProc
  ExecuteGlobal "Function NewG : NewG = 6 : End Function"
  Execute "Function LocF : LocF = 7 : End Function"
  ExecuteGlobal "Dim NewV : NewV = 9"
  WScript.Echo NewG, TypeName(NewG), NewG * 2, LocF(), NewV
  NewV = 10
End Sub
InProc : WScript.Echo NewV ' expect: 6 Integer 12 7 9
' expect: 10
On Error Resume Next
LocF : WScript.Echo Err.Number ' expect: 13
