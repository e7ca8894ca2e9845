# Prints the objects of the scene that client.cpp makes. The page about debuggers shows the first section.
set pagination off
set width 0
set print elements 8
break inspect
run
echo == views\n
set trace-commands on
print scene.scan
print scene.shifted
print scene.large
print scene.sample
print scene.wide
print scene.columns
print scene.words
set trace-commands off
echo == checks\n
print scene.empty
print scene.bit
print scene.positive
print scene.spent
print *&scene.scan
set print pretty on
print scene.shifted
set print pretty off
python widest = gdb.parse_and_eval("scene.widest").format_string()
python print(widest.endswith("signed = 1" + 5000 * "0" + "}"))
set variable scene.empty.startPosition = 7
print scene.empty
set variable scene.bit.wordCount = 2
print scene.bit
