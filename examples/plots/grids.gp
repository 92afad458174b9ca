set multiplot layout 1,2 title "Effective baseline and baseline at the nine points (m)"
unset key
set xtics ("near" 0, "mid" 1, "far" 2) nomirror scale 0; set xlabel "range"; set xrange [-0.6:2.6]; set format y "%.0f"
stats "grids" using 1 every ::0::2 nooutput
set yrange [STATS_max + 0.2 * STATS_max:STATS_min - 0.1 * STATS_max]  # line 0 on top, as in an image
set ytics (sprintf("%.0f", STATS_min) STATS_min, sprintf("%.0f", STATS_median) STATS_median, \
           sprintf("%.0f", STATS_max) STATS_max)
do for [grid=0:1] {
  set title grid == 0 ? "effective baseline" : "baseline"; set ylabel grid == 0 ? "line" : ""
  plot for [c=2:4] "grids" every ::(3 * grid)::(3 * grid + 2) using (c - 2):1 with points pointtype 7 pointsize 1.5 \
         linecolor "#0072b2", \
       for [c=2:4] "grids" every ::(3 * grid)::(3 * grid + 2) using (c - 2):1:(sprintf("%.2f", column(c))) \
         with labels offset 0,-1
}
