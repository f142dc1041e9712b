Class Box
  Private m_v, m_items(3)
  Public Tag
  Private Sub Class_Initialize : m_v = "start" : WScript.Echo "init" : End Sub
  Private Sub Class_Terminate : WScript.Echo "gone " & m_v : End Sub
  Public Default Property Get Value : Value = m_v : End Property
  Public Property Let Value(x) : m_v = x : End Property
  Public Property Get Item(i) : Item = m_items(i) : End Property
  Public Property Let Item(i, x) : m_items(i) = x : End Property
  Public Property Set Item(i, x) : Set m_items(i) = x : End Property
  Public Function Self : Set Self = Me : End Function
  Public Sub Grow : m_v = m_v & "+" : Helper "h" : Me.Tag = "t" : End Sub
  Private Sub Helper(x) : m_v = m_v & x : End Sub
  Public Function Chain(x) : m_v = m_v & x : Set Chain = Me : End Function
End Class
Dim b, c : Set b = New Box                          ' expect: init
WScript.Echo b, b.Value, TypeName(b), IsObject(b)   ' expect: start start Box True
b = "changed through the default?"                  ' a Let to an object variable replaces the object
' expect: gone start
WScript.Echo TypeName(b)                            ' expect: String
Set b = New Box                                     ' expect: init
b.Value = "v" : b.Item(2) = 5 : WScript.Echo b.Item(2), b & "" ' expect: 5 v
b.Grow : WScript.Echo b.Value, b.Tag                ' expect: v+h t
WScript.Echo b.Chain(1).Chain(2).Self.Value         ' expect: v+h12
Set c = b : WScript.Echo b Is c, Not b Is Nothing   ' expect: True True
Set b = Nothing : WScript.Echo "still held"         ' expect: still held
With c
  .Value = "w" : .Item(1) = .Value & "!"
  With .Self : .Tag = "inner" : End With
  WScript.Echo .Item(1), .Tag                       ' expect: w! inner
End With
Set c = Nothing                                     ' expect: gone w
Sub Scope : Dim x : Set x = New Box : x.Value = "local" : WScript.Echo "end of scope" : End Sub
Scope
' expect: init
' expect: end of scope
' expect: gone local
Class Node : Public nxt : Public n : End Class
Dim head, k, i : Set head = Nothing
For i = 1 To 20000 : Set k = New Node : k.n = i : Set k.nxt = head : Set head = k : Next
Set k = Nothing : Set head = Nothing : WScript.Echo "list freed" ' expect: list freed
Class Ring : Public other : Private Sub Class_Terminate : WScript.Echo "ring" : End Sub : End Class
Dim r1 : Set r1 = New Ring : Set r1.other = New Ring : Set r1.other.other = r1
Class Adder
  Public Default Function Sum(a, b) : Sum = a + b : End Function
  Public Property Get Pair : Pair = Array(7, 8) : End Property
End Class
Dim ad : Set ad = New Adder : WScript.Echo ad(1, 2), ad.Pair(1), ad.Sum(3, 4) ' expect: 3 8 7
' expect: ring
' expect: ring
