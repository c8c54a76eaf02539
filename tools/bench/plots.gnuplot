# Draws results of docs/performance.csv as docs/pictures/performance-*.svg. Run it with gnuplot in the
# root folder of the project. The same results give the same files.

# Prints the rows of the benchmark whose name begins with `name`, in ascending order of the recipes.
rows(name) = sprintf('< grep -F ''"%s'' docs/performance.csv', name)
lastRow(name) = rows(name) . ' | tail -n 1'
set datafile separator comma # columns: 2 recipes, 4 baseline and 5 Pantrywise in seconds

# A label is beside the last point of its line. If both lines of a panel end close to each other, their
# labels are moved apart.
labelY(y, other) = abs(log10(y / other)) > 0.25 ? y : y > other ? y * 1.3 : y / 1.3
timeText(s) = s < 0.01 ? sprintf('%.1f ms', s * 1000) : s < 1 ? sprintf('%.0f ms', s * 1000) : \
              sprintf('%.1f s', s)
labelText(name, seconds) = name . ' ' . timeText(seconds)

set terminal svg size 960, 420 font 'sans-serif,14' background '#ffffff' noenhanced
set encoding utf8
unset key
set border 0
set tics scale 0 textcolor '#444444'
set grid linetype 1 linecolor '#e0e0e0'
set logscale xy
set xrange [800:130000]
set xtics ('1,000' 1000, '10,000' 10000, '100,000' 100000)
set xlabel 'recipes in the database' textcolor '#444444'
set ytics ('1 ms' 0.001, '10 ms' 0.01, '100 ms' 0.1, '1 s' 1, '10 s' 10)
set style line 1 linecolor '#1558a6' linewidth 3 pointtype 7 pointsize 0.6
set style line 2 linecolor '#707070' linewidth 2 pointtype 7 pointsize 0.5 dashtype (7, 5)
baselineLine = 'using 2:4 with linespoints linestyle 2'
baselineLabel = 'with labels left offset 1, 0 textcolor "#606060"'
pantrywiseLine = 'using 2:5 with linespoints linestyle 1'
pantrywiseLabel = 'with labels left offset 1, 0 textcolor "#1558a6"'

# A plot has two panels side by side, with space at the right of each for the labels of its lines.
set tmargin at screen 0.76
set bmargin at screen 0.16
leftPanel = 'set lmargin at screen 0.08; set rmargin at screen 0.33'
rightPanel = 'set lmargin at screen 0.57; set rmargin at screen 0.82'
heading = 'title "Time for one action: lower is faster" offset 0, -0.5 textcolor "#444444"'

# Draws a panel with one line for Pantrywise and one for its baseline.
simplePanel = 'plot rows(benchmark) @baselineLine, "" @pantrywiseLine, lastRow(benchmark) \
  using 2:(labelY($4, $5)):(labelText(baseline, $4)) @baselineLabel, \
  "" using 2:(labelY($5, $4)):(labelText("Pantrywise", $5)) @pantrywiseLabel'

set output 'docs/pictures/performance-windows.svg'
set yrange [0.0008:1.5]
set multiplot @heading
@leftPanel
set title 'Open the list of all recipes' font ',15:Bold'
benchmark = 'open the recipe list'
baseline = 'plain SQLite'
@simplePanel
@rightPanel
set title 'Open the recipe window' font ',15:Bold'
first = 'open the recipe window with the first recipe'
chosen = 'open the recipe window with a recipe of the list'
ownText(seconds, recipe) = labelText('Pantrywise', seconds) . "\n" . recipe
plot rows(first) @baselineLine, '' @pantrywiseLine, rows(chosen) @pantrywiseLine, \
  lastRow(first) using 2:4:(labelText(baseline, $4)) @baselineLabel, \
  '' using 2:5:(ownText($5, 'with the first recipe')) @pantrywiseLabel, \
  lastRow(chosen) using 2:5:(ownText($5, 'with a chosen recipe')) @pantrywiseLabel
unset multiplot

set output 'docs/pictures/performance-files.svg'
set yrange [0.0008:15]
set multiplot @heading
@leftPanel
set title 'Import one recipe file' font ',15:Bold'
benchmark = 'import one file'
@simplePanel
@rightPanel
set title 'Export all recipes as web pages' font ',15:Bold'
benchmark = 'export web pages to the temporary folder'
baseline = 'plain files'
@simplePanel
unset multiplot
