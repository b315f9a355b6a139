' Appended by scripts/test-com after every script of the suite.
TakeStrayError "end of script"
WScript.Echo "END-OF-SCRIPT passed=" & passed & " failed=" & failed
WScript.Quit failed
