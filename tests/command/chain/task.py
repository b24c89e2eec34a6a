"""Checks a task of the Windows Task Scheduler, and prints its command line as it would be here.

    task.py <file.xml> <what its log file is here>

The file has to be as schtasks /create /xml takes it: UTF-16 with a byte order mark, elements of version
1.2 in the order in which the scheduler itself exports them.
"""

import re
import sys
import xml.etree.ElementTree as tree

NAMESPACE = "{http://schemas.microsoft.com/windows/2004/02/mit/task}"
ORDER = {
    "Task": ["RegistrationInfo", "Triggers", "Principals", "Settings", "Actions"],
    "RegistrationInfo": ["Date", "Author", "Version", "Description", "URI"],
    "Triggers": ["CalendarTrigger"],
    "CalendarTrigger": ["StartBoundary", "EndBoundary", "ExecutionTimeLimit", "Enabled", "RandomDelay",
                        "ScheduleByDay"],
    "ScheduleByDay": ["DaysInterval"],
    "Principals": ["Principal"],
    "Principal": ["UserId", "LogonType", "RunLevel"],
    "Settings": ["MultipleInstancesPolicy", "DisallowStartIfOnBatteries", "StopIfGoingOnBatteries",
                 "AllowHardTerminate", "StartWhenAvailable", "RunOnlyIfNetworkAvailable", "IdleSettings",
                 "AllowStartOnDemand", "Enabled", "Hidden", "RunOnlyIfIdle", "WakeToRun",
                 "ExecutionTimeLimit", "Priority"],
    "Actions": ["Exec"],
    "Exec": ["Command", "Arguments", "WorkingDirectory"],
}
DURATION = r"PT(\d+H)?(\d+M)?(\d+S)?"
CONTENT = {
    "StartBoundary": r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d", "Enabled": "true|false", "RandomDelay": DURATION,
    "DaysInterval": r"[1-9]\d{0,2}", "UserId": r"S-1-5-(18|19|20)", "RunLevel": "LeastPrivilege",
    "MultipleInstancesPolicy": "Parallel|Queue|IgnoreNew|StopExisting", "ExecutionTimeLimit": DURATION,
    "Priority": "[0-9]|10", "Command": r"%ProgramFiles%\\Tolvane\\tolvane\.exe",
}


def check(holds, text):
    if not holds:
        sys.exit(f"{sys.argv[1]}: {text}")


def walk(element):
    check(element.tag.startswith(NAMESPACE), f"{element.tag} is of another namespace")
    name = element.tag[len(NAMESPACE):]
    names = [child.tag[len(NAMESPACE):] for child in element]
    allowed = ORDER.get(name, [])
    check(names == [each for each in allowed if each in names], f"{name} holds {names}")
    if not names:
        text = element.text or ""
        pattern = CONTENT.get(name, "true|false" if element.tag in BOOLEAN else ".+")
        check(re.fullmatch(pattern, text), f"{name} is {text}")
    for child in element:
        walk(child)


BOOLEAN = {NAMESPACE + name for name in ORDER["Settings"] if name not in CONTENT}
with open(sys.argv[1], "rb") as file:
    bytes_of_file = file.read()
check(bytes_of_file.startswith(b"\xff\xfe"), "has no byte order mark of UTF-16")
check("encoding=\"UTF-16\"" in bytes_of_file.decode("utf-16").splitlines()[0], "does not say that it is UTF-16")
task = tree.fromstring(bytes_of_file)
check(task.tag == NAMESPACE + "Task" and task.get("version") == "1.2", "is no task of version 1.2")
walk(task)
for path in ("Triggers/CalendarTrigger/StartBoundary", "Triggers/CalendarTrigger/ScheduleByDay",
             "Principals/Principal/UserId", "Actions/Exec/Command"):
    check(task.find("/".join(NAMESPACE + part for part in path.split("/"))) is not None, f"has no {path}")
principals = [each.get("id") for each in task.iter(NAMESPACE + "Principal")]
check(task.find(NAMESPACE + "Actions").get("Context") in principals, "has actions of an unknown principal")
arguments = task.find(f"{NAMESPACE}Actions/{NAMESPACE}Exec/{NAMESPACE}Arguments").text
print("tolvane " + re.sub(r'--log "[^"]+"', "--log " + sys.argv[2], arguments))
