' HostBridge from a script: the application one component sets is the one every other bridge sees;
' ShowModal refuses what it cannot show.
Dim bridgeA, bridgeB, stand, shownRes
Set bridgeA = Library("HostBridge")
Set bridgeB = Library("HostBridge")
Check "no application at first", bridgeB.Application Is Nothing, True
Set stand = Library("Vector")  ' any object stands for a host without events
Set bridgeA.Application = stand
Check "the other bridge sees the application", bridgeB.Application Is stand, True
Set bridgeB.Application = Nothing
Check "either bridge may drop it", bridgeA.Application Is Nothing, True
bridgeA.ShowModal 12345
CheckError "ShowModal of a number that is no window", 5, "Invalid procedure call or argument"
bridgeA.ShowModal stand
CheckErrorNumber "ShowModal of an object without Show", 438
bridgeA.ShowModal Nothing
CheckErrorNumber "ShowModal of Nothing", 424
