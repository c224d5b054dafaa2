#pragma once

// Output of the system log tool in its newline-delimited JSON style, written
// after the tool's published field list (timestamp, machTimestamp,
// messageType, category, subsystem, processID, processImagePath,
// eventMessage, senderImagePath, ...), never copied from a real machine.
// Names, ids and paths are made up.

namespace sodam::fixtures {

// The camera stack: one application opening the camera many times, the
// system's own daemon, the program itself (its parent pid is 500 in the
// tests) and a second application.
inline constexpr const char* cameraStack =
    R"({"timestamp":"2025-03-04 09:00:01.250000+0900","machTimestamp":7710023311,"messageType":"Default","eventType":"logEvent","category":"device","subsystem":"com.apple.cmio","processID":812,"processImagePath":"/Applications/Meetly.app/Contents/MacOS/Meetly","senderImagePath":"/System/Library/Frameworks/CoreMediaIO.framework/Versions/A/CoreMediaIO","threadID":90211,"traceID":1,"activityIdentifier":0,"timezoneName":"","eventMessage":"CMIO_DAL_System.cpp:512:StartStream device 0x21"}
{"timestamp":"2025-03-04 09:00:01.500000+0900","messageType":"Default","eventType":"logEvent","category":"device","subsystem":"com.apple.cmio","processID":812,"processImagePath":"/Applications/Meetly.app/Contents/MacOS/Meetly","eventMessage":"CMIO_DAL_System.cpp:530:StartStream again"}
{"timestamp":"2025-03-04 09:00:01.600000+0900","messageType":"Default","subsystem":"com.apple.cmio","processID":230,"processImagePath":"/usr/libexec/avconferenced","eventMessage":"CMIO_DAL_System.cpp:512:StartStream"}
{"timestamp":"2025-03-04 09:00:01.700000+0900","messageType":"Default","subsystem":"com.apple.cmio","processID":500,"processImagePath":"/Applications/SodamJari.app/Contents/MacOS/SodamJari","eventMessage":"CMIO_DAL_System.cpp:512:StartStream"}
{"timestamp":"2025-03-04 09:00:02.000000+0900","messageType":"Default","subsystem":"com.apple.cmio","processID":944,"processImagePath":"/Users/mina/Downloads/snap-tool","eventMessage":"CMIO_DAL_System.cpp:512:StartStream"}
)";

// The permission daemon: a request of an application through a helper tool
// of its own, answered "allowed", and a request for the microphone.
inline constexpr const char* permissionDaemon =
    R"({"timestamp":"2025-03-04 09:10:00.000000+0900","processID":177,"processImagePath":"/System/Library/PrivateFrameworks/TCC.framework/Support/tccd","subsystem":"com.apple.TCC","category":"access","eventMessage":"AUTHREQ_CTX: msgID=177.41, function=TCCAccessRequest, service=kTCCServiceCamera, preflight=no, query=1,"}
{"timestamp":"2025-03-04 09:10:00.010000+0900","processID":177,"processImagePath":"/System/Library/PrivateFrameworks/TCC.framework/Support/tccd","eventMessage":"AUTHREQ_ATTRIBUTION: msgID=177.41, attribution={responsible={TCCDProcess: identifier=com.example.meetly, pid=812, auid=501, euid=501, binary_path=/Applications/Meetly.app/Contents/MacOS/Meetly}, accessing={TCCDProcess: identifier=com.example.meetly.capture, pid=813, auid=501, euid=501, binary_path=/Applications/Meetly.app/Contents/Library/LoginItems/Capture.app/Contents/MacOS/Capture}, },"}
{"timestamp":"2025-03-04 09:10:00.020000+0900","processID":177,"processImagePath":"/System/Library/PrivateFrameworks/TCC.framework/Support/tccd","eventMessage":"AUTHREQ_RESULT: msgID=177.41, authValue=2, authReason=2, authVersion=1, desired_auth=0, error=(null),"}
{"timestamp":"2025-03-04 09:11:00.000000+0900","processID":177,"processImagePath":"/System/Library/PrivateFrameworks/TCC.framework/Support/tccd","eventMessage":"AUTHREQ_CTX: msgID=177.42, function=TCCAccessRequest, service=kTCCServiceMicrophone, preflight=no,"}
{"timestamp":"2025-03-04 09:11:00.010000+0900","processID":177,"processImagePath":"/System/Library/PrivateFrameworks/TCC.framework/Support/tccd","eventMessage":"AUTHREQ_ATTRIBUTION: msgID=177.42, attribution={accessing={TCCDProcess: identifier=com.example.recorder, pid=901, auid=501, euid=501, binary_path=/Applications/Recorder.app/Contents/MacOS/Recorder}, },"}
)";

// The menu-bar indicator, as `stream` prints it: first the tool's banner.
inline constexpr const char* indicatorStream =
    "Filtering the log data using \"subsystem == \\\"com.apple.controlcenter\\\"\"\n"
    R"({"timestamp":"2025-03-04 09:20:00.000000+0900","subsystem":"com.apple.controlcenter","category":"sensor-indicators","processID":410,"processImagePath":"/System/Library/CoreServices/ControlCenter.app/Contents/MacOS/ControlCenter","eventMessage":"Sorted active attributions from SystemStatus update: [\n  [cam] Meetly (com.example.meetly),\n  [mic] Meetly (com.example.meetly),\n  [cam] 소담자리 (kr.lumenfold.sodamjari)\n]"})"
    "\n"
    R"({"timestamp":"2025-03-04 09:21:00.000000+0900","subsystem":"com.apple.controlcenter","category":"sensor-indicators","eventMessage":"Sorted active attributions from SystemStatus update: [\n]"})"
    "\n";

}  // namespace sodam::fixtures
