#!/usr/bin/env python3
"""Mutation testing: changes the library in one place at a time and runs the suite on each change.

The changes are made and built below WORK, in a copy of the tree. The seed decides which places are
changed. A change that does not compile, or that leaves the machine code as it was, is replaced by
another one. A change that no test notices is printed as a survivor: check whether a caller could
have noticed it.
"""
import argparse
import hashlib
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]

# The programs that test a folder of src/ or a public header most directly. They are built and run first.
BITS = 'random_byte_buffer bits_test'
NUMBERS = 'random_number numbers_test random_number_util random_byte_buffer'
TEXT = 'random_tokenizer text_test'
LOG = 'random_log logging_test logging_process memory_test'
FILES = 'port_test random_normalize_path files_test'
NEAREST = {
    'bits': BITS, 'numbers': NUMBERS, 'text': TEXT, 'logging': LOG, 'files': FILES, 'port': FILES,
    'common': f'internal_test {BITS} {NUMBERS}', 'Kel_ByteBuffer': BITS, 'Kel_Number': NUMBERS,
    'Kel_NumberUtil': NUMBERS, 'Kel_StrTok': TEXT, 'Kel_Util': f'{TEXT} {FILES}', 'Logger': LOG,
    'MethodLogger': LOG,
}

# A pattern and its replacement for each kind of change. clang-format puts blanks around binary
# operators, so these patterns leave templates and references alone.
CHANGES = [(re.compile(pattern), new) for pattern, new in [
    (r' < ', ' <= '), (r' <= ', ' < '), (r' > ', ' >= '), (r' >= ', ' > '), (r' < ', ' > '),
    (r' == ', ' != '), (r' != ', ' == '), (r' && ', ' || '), (r' \|\| ', ' && '),
    (r'!(?=[\w(])', ''), (r'\btrue\b', 'false'), (r'\bfalse\b', 'true'),
    (r' - 1\b', ''), (r' \+ 1\b', ''), (r' \+ 1\b', ' + 2'), (r' \+ ', ' - '), (r' - ', ' + '),
    (r' << ', ' >> '), (r' >> ', ' << '), (r' \| ', ' & '), (r' % ', ' / '), (r' \* ', ' + '),
    (r' \+= ', ' -= '), (r' -= ', ' += '), (r' \|= ', ' = '), (r' &= ', ' |= '),
    (r'(?<!\w)\+\+(?=\w)', '--'), (r'(?<!\w)--(?=\w)', '++'), (r' & [\w.]+(?![\w(\[.:])', ''),
    (r'(?<![\w.])0(?![\w.\'])', '1'),
    (r'(?<![\w.])([1-9]\d*)(?![\w.\'])', lambda m: str(int(m[1]) + 1)),
    (r'(?<![\w.])0x([0-9A-F]+)(?![0-9A-F\'])', lambda m: f'0x{int(m[1], 16) ^ 1:0{len(m[1])}X}'),
    (r"'([A-Za-z0-9])'", lambda m: f"'{chr(ord(m[1]) + 1)}'"),
    (r'"([^"\\]+)"', r'"\1~"'),
    (r'^(\s+)[A-Za-z_][\w:.>-]*\(.*\);$', r'\1;'),  # drops a call
    (r'^(\s+)(?!return|const |auto )[\w\[\].>-]+(?: [-+|&^]?= ).*;$', r'\1;'),  # drops an assignment
    (r'^(\s+)if \((.*)\)( \{)?$', r'\1if (false && (\2))\3'),
]]
SKIPPED = re.compile(r'\s*(#|//|assert\(|static_assert|using |namespace |template|extern |KELRT_|'
                     r'(private|public|protected):)')


def changes_of(file):
    """Yields (file, line number, changed line) for each change of a file."""
    for number, line in enumerate((ROOT / file).read_text().split('\n')):
        comment = line.find('//')
        code = line if comment < 0 or line.count('"', 0, comment) % 2 else line[:comment].rstrip()
        for pattern, new in CHANGES if code and not SKIPPED.match(line) else []:
            for match in pattern.finditer(code):
                inside_text = code.count('"', 0, match.start()) % 2 and match[0][0] != '"'
                if not inside_text:
                    text = new(match) if callable(new) else match.expand(new)
                    yield file, number, code[:match.start()] + text + code[match.end():]


def run(limit, *command):
    """Returns whether a command succeeds within LIMIT seconds, and its output."""
    try:
        # One source contains the time of the build. A fixed time keeps the machine code the same in each build.
        done = subprocess.run([str(c) for c in command], capture_output=True, text=True, errors='replace',
                              timeout=limit, check=False, env={**os.environ, 'SOURCE_DATE_EPOCH': '1300000000'})
        return done.returncode == 0, done.stdout
    except subprocess.TimeoutExpired:
        return False, ''


class Copy:
    """A copy of the tree, with its build."""

    def __init__(self, work):
        self.tree, self.build = work / 'tree', work / 'build'
        shutil.rmtree(work, ignore_errors=True)
        for name in run(60, 'git', '-C', ROOT, 'ls-files', '-co', '--exclude-standard')[1].split('\n'):
            if (ROOT / name).is_file():
                (self.tree / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(ROOT / name, self.tree / name)
        run(120, 'cmake', '-S', self.tree, '-B', self.build, '-G', 'Ninja', '-DCMAKE_BUILD_TYPE=Mutation',
            '-DCMAKE_CXX_FLAGS=-O1 -w', '-DCMAKE_LINK_DEPENDS_NO_SHARED=ON')
        if not self.make('all', limit=3600) or not self.passes(limit=60):
            sys.exit('The suite fails without any change.')
        self.code_before = self.code()

    def make(self, *targets, limit=300):
        return run(limit, 'cmake', '--build', self.build, '-j2', '--target', *targets)[0]

    def passes(self, *choice, limit=10):
        return run(600, 'ctest', '--test-dir', self.build, '-j2', '--stop-on-failure', '--no-tests=error',
                   '--timeout', limit, *choice)[0]

    def code(self):
        """Returns the digests of the library's object files."""
        objects = sorted(self.build.glob('CMakeFiles/kelutil_*.dir/**/*.o'))
        return [hashlib.sha256(o.read_bytes()).digest() for o in objects]

    def outcome(self, file):
        """Returns 'caught', 'survived', or 'void' if it does not compile or leaves the machine code as it was."""
        in_source = file.startswith('src/')
        if not self.make('KelUtil') or (in_source and self.code() == self.code_before):
            return 'void'
        nearest = NEAREST.get(file.split('/')[1] if in_source else pathlib.Path(file).stem, '').split()
        if nearest and self.make(*nearest) and not self.passes('-L', f'^({"|".join(nearest)})$'):
            return 'caught'
        return 'void' if not self.make('all') else 'survived' if self.passes() else 'caught'

    def try_change(self, file, number, after):
        """Makes a change, tests it and undoes it. Returns the outcome and the original line."""
        path = self.tree / file
        original = path.read_text()
        lines = original.split('\n')
        before, lines[number] = lines[number], after
        path.write_text('\n'.join(lines))
        outcome = self.outcome(file)
        path.write_text(original)
        return outcome, before


def main():
    parser = argparse.ArgumentParser(description=__doc__.split('\n')[0])
    parser.add_argument('work', metavar='WORK', type=pathlib.Path)
    parser.add_argument('--count', type=int, default=180, help='changes in all (default: 180)')
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--only', default='', metavar='PATTERN', help='files whose path matches')
    arguments = parser.parse_args()
    files = run(60, 'git', '-C', ROOT, 'ls-files', 'src/*.cpp', 'src/*.h', 'include/*.h')[1].split()
    changes = [change for file in files if re.search(arguments.only, file) for change in changes_of(file)]
    random.Random(arguments.seed).shuffle(changes)
    copy = Copy(arguments.work.resolve())
    count = {'caught': 0, 'survived': 0, 'void': 0}
    while changes and count['caught'] + count['survived'] < arguments.count:
        file, number, after = changes.pop(0)
        outcome, before = copy.try_change(file, number, after)
        count[outcome] += 1
        if outcome == 'survived':
            print(f'{file}:{number + 1}: survived, after {count["caught"]} that were caught\n'
                  f'- {before.strip()}\n+ {after.strip()}', flush=True)
    judged = max(1, count['caught'] + count['survived'])
    print(f'mutate: seed {arguments.seed}: {count["caught"]} of {judged} changes caught, '
          f'{100 * count["caught"] / judged:.1f} %')


if __name__ == '__main__':
    main()
