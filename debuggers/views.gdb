# What the test of the views prints; client.cpp says what is in the scene.
set pagination off
set width 0
set print elements 8
break inspect
run
echo == views\n
print scene.empty
print scene.scan
print scene.shifted
print scene.large
print scene.sample
print scene.positive
print scene.bit
print scene.wide
python wide = gdb.parse_and_eval("scene.widest").format_string()
python print(wide.endswith("signed = 1" + 5000 * "0" + "}"))
print scene.columns
print scene.words
print scene.spent
set variable scene.empty.startPosition = 7
print scene.empty
print *&scene.scan
set print pretty on
print scene.shifted
python exec(compile(open(natvis_names).read(), natvis_names, "exec"))
