;;; kcf-mode.el --- Major mode for KCF command files  -*- lexical-binding: t; -*-

;; Version: 1.0
;; Package-Requires: ((emacs "26.1"))
;; Keywords: languages

;;; Commentary:

;; Colours, indentation, folding, imenu, `compile' with kcf check, and eglot with kcf language-server.
;; The words are those of the vocabulary: kcf editor-words writes them.

;;; Code:

(require 'compile)
(require 'seq)

(defgroup kcf nil
  "KCF command files."
  :group 'languages)

(defcustom kcf-program "kcf"
  "The program that checks command files and serves editors."
  :type 'string)

(defcustom kcf-indent-offset 2
  "Columns by which what stands in a block is indented."
  :type 'integer
  :safe #'integerp)

(defface kcf-block '((t :inherit font-lock-type-face)) "Names of blocks.")
(defface kcf-tag '((t :inherit font-lock-variable-name-face)) "Names of tags.")
(defface kcf-choice '((t :inherit font-lock-constant-face)) "Words that tags let choose from.")
(defface kcf-number '((t :inherit font-lock-builtin-face)) "Numbers.")
(defface kcf-text '((t :inherit font-lock-string-face)) "Names, files and other texts.")
(defface kcf-fault '((t :inherit font-lock-warning-face)) "What cannot stand there.")

(defun kcf--words (value &rest words)
  "Return a table from each of WORDS to VALUE."
  (let ((table (make-hash-table :test #'equal)))
    (dolist (word words table)
      (puthash word value table))))

(defconst kcf--blocks
  ;; kcf words: blocks(" ")
  (kcf--words t "APPARENT_COHESION" "BEDLOAD" "BEDMATERIAL" "BIOMASS" "BOUNDARY" "CONTROLLER" "COUPLING" "COUPLINGS" "COUPLING_LATERAL" "DIRECTION" "DOMAIN" "EXTERNAL_SOURCE" "FEEDBACK" "FIXED_BED" "FORMULA" "FRICTION" "GEOMETRY" "GRAIN_CLASS" "GRAVITATIONAL_TRANSPORT" "GROUNDWATER" "HYDRAULICS" "INITIAL" "INNER_BOUNDARY" "KESTCHAIN_1D" "KESTPLANE_2D" "KESTSUB" "KEST_EXTERN" "LAYER" "MANIPULATED_VARIABLE" "MATERIAL" "MIXTURE" "MONITORED_VARIABLE" "MORPHOLOGY" "MOVABLE_BED" "OUTPUT" "PARALLEL" "PARAMETER" "PHYSICAL_PROPERTIES" "PROJECT" "RETENTION_MODEL" "SECTION_COMPUTATION" "SOIL_ASSIGNMENT" "SOIL_DEF" "SOURCE" "SPECIAL_OUTPUT" "STRINGDEF" "SUBSURFACE" "SUSPENDED_LOAD" "SUSPENSION" "TIMESTEP" "TURBULENCE_MODEL" "VEGETATION" "ZONE"))

(defconst kcf--choices
  ;; kcf words: words(" ")
  (kcf--words t "2dm" "HID" "IODown" "IOUp" "KESTviz" "PID" "Q" "Qsed" "above" "abs_momentum" "abs_velocity" "actual" "algebraic" "all" "area" "ascii" "ashidamichiue" "average" "avs_ucd" "back" "backwater" "bagnold" "balance" "balance_discharge_fluxes" "balance_momentum_fluxes" "bed_load_function" "bedelevation" "bedload" "bedload_vec" "below" "bezzola" "bifurcation" "biomass" "block" "borah" "bottom" "bottom_opening" "bounce_back" "boundary_history" "brooks_corey" "carrying_cap" "chezy" "clear_water" "conc" "concentration" "concentrations" "confluence_wse" "constant" "constant_factor" "continue" "conveyance" "coupling_IODown" "coupling_connection" "coupling_gate" "coupling_hqrelation" "coupling_hydrograph" "coupling_kestplane" "coupling_off_channel" "coupling_out_down" "coupling_qlateral" "coupling_sediment_discharge" "coupling_sideweir" "coupling_source_discharge" "coupling_suspension_discharge" "coupling_weir" "coupling_zero_gradient" "coupling_zhydrograph" "critical" "curvature_effect_dynamic" "curvature_effect_static" "cut_line" "cut_plane" "d90" "darcy" "default" "delta_v_sed" "delta_v_suspension" "delta_v_water" "deltaz" "depth" "discharge" "discharge_series" "discharge_time_table" "downstream" "dredge" "dry" "dynamic" "east" "edge" "edge_history" "element_centered" "element_history" "energy_head" "engelundhansen" "exact" "exp" "explicit" "external" "external_source_discharge" "file" "fix" "fixed_value" "fraction" "friction" "front" "fully" "fully_wetted" "gate" "gate_with_flap" "general" "geometric" "gessler" "gh2" "global_value" "grain_bedload" "grain_size" "hdf5" "hlb" "hll" "hllc" "holly" "hqrelation" "hydrograph" "hydrostatic" "index_table" "initial_mesh" "iteration" "junction" "kestrix" "lambda" "lateral_bed_slope" "left" "local" "local_slope_chen" "local_slope_vanrijn" "main" "manning" "matlab" "matlab_flux" "max" "mdpm" "mean" "median" "meshes" "meshfile" "min" "min_value" "mixed" "mixtures" "momentum" "monitor" "mpm" "mpm_bedforms" "mpm_multi" "mpmh" "no" "no_bedforms" "no_local_slope" "node_centered" "node_history" "nodes" "north" "off" "off_channel" "on" "open" "out_down" "parker" "partially" "partially_wetted" "pore_pressure" "pore_pressures_coupling" "power_law" "pressure" "qgis" "qlateral" "quick" "quickest" "radial_gate_with_flap" "radius_curvature" "radius_curvature_abs" "reference" "rickenmann" "riemann" "right" "roe" "saturation" "sediment" "sediment_discharge" "sediment_grain_discharge" "sediment_grid" "sediment_sum" "seepage" "seepage_line" "sequential" "shape" "shear_stresses" "sideweir" "significance_value" "slope_dependent_bedforms" "sluice_gate" "smartjaeggi" "smartjaeggi_multi" "sms" "soildef" "source_bed" "source_discharge" "source_friction" "source_internal_friction" "source_wall_friction" "south" "specific_discharge" "standard" "strickler" "stringdef_history" "sum" "susp_fluxAAx" "susp_grain_conc" "susp_grain_deposition" "susp_grain_pickup" "susp_load" "susp_net_deposition_rate" "susp_total_deposition" "susp_total_pickup" "susp_upper_C" "suspended_discharge" "suspension_discharge" "table" "tables" "tau" "theta" "theta_critical" "theta_critical_vanrijn" "theta_critical_yalin" "time" "time_series" "timestep" "transport_capacity" "transport_diagram" "u" "u2h" "u_norm" "upstream" "upwind" "upwindSuspension" "user_defined_bedforms" "user_defined_settling_velocities" "v2h" "v_tang" "van_genuchten" "vanrijn" "velocity" "velocity_total" "velocity_vectors" "velocity_x" "velocity_y" "volume_area" "vtk" "wall" "water_surface_elevation" "water_table" "water_volume" "weir" "west" "wetted" "wilcockcrowe" "wse" "wu" "wuwang" "xy" "xz" "yalin" "yes" "yz" "z_element" "z_node" "zbed" "zero_gradient" "zerogradient" "zerovelocity" "zhang" "zhydrograph" "zyserman"))

(defconst kcf--tags
  (list
   ;; kcf words: numbers(" ")
   (kcf--words 'numbers "B" "CFL" "WSE_out" "a1" "a2" "adaption_length_factor" "alpha" "angle_deposition_delta" "angle_failure_deposited" "angle_failure_dry" "angle_failure_wetted" "angle_of_repose" "average_steps" "b1" "b2" "base_vector_i" "base_vector_j" "bed_forms" "bedforms_factor" "bedforms_index" "bedload_exponent" "bedload_factor" "bedload_routing_start" "bottom_elevation" "c_abutments" "c_m" "c_pier" "cell_size" "concentration" "connections_distance" "connections_index" "console_time_step" "contraction_coeff" "contraction_factor" "control_volume_factor" "control_volume_thickness" "control_volume_thickness_index" "corey_shape_factor" "correction_coeff" "critical_shear_stress_calibration" "cs_factor" "curvature_transport_factor" "cut_line_position_x" "cut_line_position_y" "cut_line_position_z" "cut_plane_position" "cut_z_position" "cycle_step" "d30" "d90" "d90_armored_layer" "damping_factor" "default_friction" "delay" "density" "deposition_threshold" "depth_min" "diameters" "diffusion_factor" "diffusion_factor_dynamic" "distortion_index" "distortion_offset" "distortion_time_interval" "dredge_elem_ids_redist" "dredge_height_relative" "dredge_level" "dredge_level_absolute" "dredge_node_ids_redist" "dredge_rate_max" "dredge_trigger_height" "dynamic_depth_solver_precision" "dynamic_prefactor" "dynamic_slope_xref" "eddy_viscosity" "elem_ids" "element_ids" "embankement_slope" "espilon" "factor" "factor_adjust" "factor_bifurcation" "factor_depth_reference_height" "factor_for_near_bed_concentration" "factor_m" "factor_n" "factor_tau_suc" "factor_tau_suc2" "factor_time_step_reduction" "failure_angle" "fixed_bed_d90" "flush_all_num_steps" "fraction_boundary" "friction" "from_to1" "from_to2" "gate_bottom_level" "gate_level" "gate_my" "gate_size" "geo_max_angle_quadrilateral" "geo_min_area_ratio" "geo_min_aspect_ratio" "grain_classes" "gravity" "growth_rate" "height_above_bed" "hiding_exponent" "hs" "hydro_step" "ids" "index" "indexGrow" "initial_radius" "initial_time_step" "iter_exchange" "kf" "kinematic_viscosity" "ks_grain" "ks_veg" "l" "lambda" "lambda_1" "lambda_2" "lateral_index" "lateral_transport_exponent" "lateral_transport_factor" "local_slope_angle_repose" "local_slope_angle_repose_cohesion" "margin" "material_index" "max_buffer" "max_change_rate" "max_delta_z" "max_dz_table" "max_interval" "max_iterations" "max_layer_thickness" "max_momentum_flux" "maximum_carrying_capacity" "maximum_distance" "maximum_distance_increase" "maximum_dredge_rate" "maximum_time_step" "maximum_waterdepth" "min_abs_radius" "min_changed_volume" "min_interval" "min_theta_critic" "minimum_points_within" "minimum_time_step" "minimum_water_depth" "momentum_factor" "momentum_factor_down" "momentum_factor_up" "my" "n" "new_layer_factor" "no_cells_i" "no_cells_j" "no_cells_k" "node_ids" "num_piers" "number_of_iterations" "number_susp_fractions" "number_threads" "offset" "only_hydro" "opening_width" "output_time_step" "packet_size" "pickup_factor" "pickup_factors" "poleni" "porosity" "port" "power_distance" "power_law_a" "power_law_b" "precision" "q_out" "radius_static" "range" "real_time_factor" "ref_conc_factor" "ref_coordinates" "restart_solution_time" "restart_start_time" "restart_time_step" "rho_fluid" "riemann_tolerance" "root_value" "roughness_factor" "saturation_threshold_deposition" "saturations_lower_upper" "saturations_z_lower_upper" "settling_velocities" "shape_factor" "slope" "slope_dependent_bedforms_factor" "slope_limit_bedforms" "stabilization_height" "start_time" "start_value" "steady_value" "strickler_factor" "strong_coupling_iter" "tau" "tau_erosion_start" "theta_critic_grain" "theta_critic_veg" "theta_critical" "theta_critical_index" "theta_r" "theta_s" "threshold_angle" "threshold_wse" "time_Zw" "time_average_sec" "time_range" "time_step" "time_veg_growth" "tk" "total_run_time" "turbulence_factor" "u" "update_timestep_radius" "upwind" "upwind_index" "value" "value_range" "vectors_scaling_factor" "viscosity" "volume_fraction" "wall_friction_factor" "weir_bottom_level" "weir_crest_height" "weir_crest_length" "weir_level" "weir_my" "wetting_fraction" "width" "write_jpeg_image_time" "x_values" "y_values" "ymax" "ymin" "z_0" "z_burial" "z_reduction" "z_uprooting" "z_values" "zb_fix" "zhyd_relaxation_tau" "zweir_fac_a" "zweir_fac_b")
   ;; kcf words: choices(" ")
   (kcf--words 'choices "abrasion" "activate_cells" "angle_wetted_criterion" "bedforms_type" "bedload_formula" "boundary_gradient" "calculation_type" "check_hydrostatic_stabilization" "concentration_type" "connections_automatic" "control_volume_initial" "control_volume_type" "conveyance_type" "create_new_layers" "curvature_transport_factor_type" "cut_plane" "diffusion" "dump_crosssections" "dynamic_depth_solver" "dynamic_slope" "eddy_viscosity_type" "erode_below_fixed_bed" "exchange_type" "face" "fixed_time_step" "format" "gate_type" "grain_size_friction" "gravity_transport_on_cells" "gridlines" "history_one_file" "ids_instead_coords" "ignore_wave_celerity" "inactive" "inflow_possible" "input_type" "internal_levees" "inverse_apparent" "lateral_transport_type" "limit_bedload_wetted" "limit_pickup_to_bedload" "local_slope" "local_slope_correction" "log_network" "max_time_level" "mesh_direction" "min_abs_radius_use" "momentum_sink" "morph_cycle" "only_subsurface_angle" "output" "output_single_file" "print_series" "print_volumes" "radius_calculation_type" "riemann_solver" "root_value_type" "scale_lateral_transport" "scheme" "sediment_exchange" "server" "shear_stress_deposition_conc" "side" "simulation_scheme" "sink_velocity_type" "split_file" "stretch_boundary_elem" "string" "strong_coupling" "suppressed_overfall" "theta_critical_approach" "theta_critical_from_bedload" "theta_critical_hiding" "transport_type_factor" "two_way_coupling" "type" "upstream_direction" "use_cell_averaged_bedload_flux" "use_energy_slope" "use_real_edge_lengths" "use_transport_type_factor" "variable" "vectors" "velocity_area" "velocity_update_partial" "wall_flux" "wall_friction" "weighting_type" "weir_determination_nodes" "weir_from_dyke1D" "wse3D" "wse_calc_method" "zero_velocity")
   ;; kcf words: mixed(" ")
   (kcf--words 'mixed "A" "F" "GT" "Q" "Qb" "TC" "b" "balance_values" "boundary_values" "c" "coefficients" "edge_values" "element_values" "energy_line" "h" "node_values" "stringdef_values" "v" "values" "wse")
   ;; kcf words: texts(" ")
   (kcf--words 'texts "KESTextern" "author" "check" "connections_filename" "cross_section" "cross_section_name_1" "cross_section_name_2" "cross_section_order" "cross_sections" "cycle_step_file" "date" "downstream_interface" "downstream_interface1" "downstream_interface2" "downstream_subdomain" "downstream_subdomain1" "downstream_subdomain2" "edge_ids" "ehead_reference_location" "external_interface" "external_subdomain" "file" "gate_level_file" "gate_size_file" "ip" "ip_address" "kestchain" "kestplane" "kestrix_interface" "kestrix_subdomain" "mesh" "mixture" "multiFile" "multiregion" "name" "position" "reference_time" "region_name" "root_value_qseries_varname" "root_value_series_file" "soil" "string_name" "string_name1" "string_name2" "stringdefs" "title" "upstream_interface" "upstream_interface1" "upstream_interface2" "upstream_subdomain" "upstream_subdomain1" "upstream_subdomain2" "weir_level_file" "width_file" "zone"))
  "Tables from tags to what their values are.")

(defun kcf--kind (tag)
  "Return what the values of TAG are, nil when there is no such tag."
  (seq-some (lambda (table) (gethash tag table)) kcf--tags))

;;; Syntax

(defvar kcf-mode-syntax-table
  (let ((table (make-syntax-table)))
    (modify-syntax-entry ?/ ". 124b" table)
    (modify-syntax-entry ?* ". 23" table)
    (modify-syntax-entry ?\n "> b" table)
    (modify-syntax-entry ?_ "_" table)
    (modify-syntax-entry ?- "_" table)
    (modify-syntax-entry ?\" "." table)
    (modify-syntax-entry ?\\ "." table)
    table))

(defun kcf--syntax-propertize (start end)
  "Make text of the braces that stand in values between START and END."
  (goto-char start)
  (while (re-search-forward "[{}]" end t)
    (let ((brace (match-beginning 0)))
      (when (save-excursion
              (goto-char brace)
              (search-backward "=" (line-beginning-position) t))
        (put-text-property brace (1+ brace) 'syntax-table (string-to-syntax "."))))))

;;; Colours

(defconst kcf--name "[A-Za-z0-9_-]+")
(defconst kcf--number "[-+]?[0-9]+\\.?[0-9]*\\(?:[eE][-+]?[0-9]+\\)?\\'")

(defvar-local kcf--value nil
  "Begin, end and kind of the value that was met last.")

(defvar kcf--face nil
  "The face of the word that was found last.")

(defun kcf--value-end ()
  "Return the end of the value at point: that of its line, or of its list."
  (save-excursion
    (let ((state (parse-partial-sexp (point) (line-end-position))))
      (while (and (> (car state) 0) (not (eobp)))
        (setq state (parse-partial-sexp (point) (line-end-position 2) nil nil state)))
      (point))))

(defun kcf--found (face)
  "Tell that what was matched last has FACE."
  (goto-char (match-end 0))
  (setq kcf--face face))

(defun kcf--list-around (place)
  "Return where the list begins that PLACE stands in, nil if there is none."
  (let ((open (nth 1 (save-excursion (syntax-ppss place)))))
    (and open (eq (char-after open) ?\() open)))

(defun kcf--next-in-value (kind)
  "Pass a word of a value of KIND; return its face, nil where it has none."
  (if (memq (char-after) '(?\( ?\)))
      (progn
        (looking-at ".")
        (if (and (eq (char-after) ?\)) (not (kcf--list-around (point))))
            (kcf--found 'kcf-fault)
          (forward-char)
          nil))
    (looking-at (cond ((eq kind 'mixed) "[A-Za-z0-9_.+-]+\\|.")
                      ((eq kind 'texts) "\\(?:[^()/\n]\\|/[^/*\n]\\)+\\|.")
                      (t "\\(?:[^ \t\n()/]\\|/[^/*\n]\\)+\\|.")))
    (let ((word (match-string 0)))
      (cond
       ((eq kind 'texts) (kcf--found 'kcf-text))
       ((string-match-p (concat "\\`" kcf--number) word) (kcf--found 'kcf-number))
       ((and (not (eq kind 'numbers)) (gethash word kcf--choices)) (kcf--found 'kcf-choice))
       ((eq kind 'mixed) (goto-char (match-end 0)) nil)
       (t (kcf--found 'kcf-fault))))))

(defun kcf--next-name ()
  "Pass a name or a brace; return its face, nil where it has none."
  (cond
   ((looking-at kcf--name)
    (let* ((name (match-string 0))
           (kind (kcf--kind name))
           (line-end (line-end-position))
           (next (save-match-data
                   (save-excursion
                     (goto-char (match-end 0))
                     (forward-comment (point-max))
                     (point))))
           (sign (char-after next)))
      (goto-char (match-end 0))
      (when (eq sign ?=)
        (goto-char (1+ next))
        (setq kcf--value
              (list (point) (save-match-data (kcf--value-end)) (or kind 'texts))))
      (setq kcf--face
            (cond
             ((eq sign ?=) (if kind 'kcf-tag 'kcf-fault))
             ((eq sign ?{) (if (gethash name kcf--blocks) 'kcf-block 'kcf-fault))
             ;; The rest of it may not be written yet.
             ((and sign (<= next line-end)) 'kcf-fault)
             (kind 'kcf-tag)
             ((gethash name kcf--blocks) 'kcf-block)
             (t 'kcf-fault)))))
   ((looking-at "[{}]")
    ;; The byte right behind an opening brace is lost.
    (let ((swallows (looking-at "{[^ \t\r\n/]")))
      (forward-char)
      (when swallows
        (looking-at ".")
        (kcf--found 'kcf-fault))))
   (t
    (looking-at ".")
    (kcf--found 'kcf-fault))))

(defun kcf--next (limit)
  "Find the next word before LIMIT that has a face, which is then `kcf--face'."
  (let (found)
    (while (and (not found)
                (progn (forward-comment (point-max))
                       (< (point) limit)))
      (setq found (if (and kcf--value (<= (car kcf--value) (point)) (< (point) (nth 1 kcf--value)))
                      (kcf--next-in-value (nth 2 kcf--value))
                    (kcf--next-name))))
    found))

(defvar font-lock-beg)

(defun kcf--extend-region ()
  "Begin colouring where a list begins, not within it."
  (setq kcf--value nil)
  (let ((open (kcf--list-around font-lock-beg)))
    (when open
      (setq font-lock-beg (save-excursion (goto-char open) (line-beginning-position)))
      t)))

;;; Indentation

(defun kcf-indent-line ()
  "Indent the line by the blocks and lists that are open; lines of a comment stay."
  (interactive)
  (let ((state (save-excursion (syntax-ppss (line-beginning-position)))))
    (if (nth 4 state)
        'noindent
      (let ((levels (car state))
            (behind (- (current-column) (current-indentation))))
        (back-to-indentation)
        (when (looking-at "[)}]")
          (setq levels (1- levels)))
        (indent-line-to (* kcf-indent-offset (max 0 levels)))
        (when (> behind 0)
          (forward-char behind))))))

;;; Outline

(defun kcf--imenu-index ()
  "Return the paths of all blocks with their places."
  (let (path index)
    (goto-char (point-min))
    (while (re-search-forward (concat "\\(" kcf--name "\\)[ \t\r\n]*{\\|[{}]") nil t)
      (let ((place (match-beginning 0))
            (name (match-string-no-properties 1))
            (state (save-match-data (save-excursion (syntax-ppss (match-beginning 0))))))
        (unless (or (nth 4 state)
                    (get-text-property (1- (point)) 'syntax-table))
          (if (eq (char-before) ?})
              (pop path)
            (push (if path (concat (car path) "/" name) (or name "")) path)
            (push (cons (car path) place) index)))))
    (nreverse index)))

;;; Programs

;; Output comes in pieces; a place that comes apart from its sentence is an error.
(add-to-list 'compilation-error-regexp-alist-alist
             '(kcf-place "^ *\\(?:-->\\|\\(:::\\)\\) \\(.+\\):\\([0-9]+\\):\\([0-9]+\\)$"
                         2 3 4 (nil . 1)))
(add-to-list 'compilation-error-regexp-alist-alist
             `(kcf ,(concat "^\\(?:error\\|\\(warning\\)\\)\\[[^]\n]+\\]: .*\n"
                            " *--> \\(.+\\):\\([0-9]+\\):\\([0-9]+\\)$")
                   2 3 4 (1)))
(add-to-list 'compilation-error-regexp-alist 'kcf-place)
(add-to-list 'compilation-error-regexp-alist 'kcf)

(defvar eglot-server-programs)
(with-eval-after-load 'eglot
  (add-to-list 'eglot-server-programs
               (cons 'kcf-mode (lambda (&rest _) (list kcf-program "language-server")))))

(defvar hs-special-modes-alist)
(with-eval-after-load 'hideshow
  (add-to-list 'hs-special-modes-alist '(kcf-mode "{" "}" "/[*/]")))

;;;###autoload
(define-derived-mode kcf-mode prog-mode "KCF"
  "Major mode for KCF command files."
  (setq-local comment-start "// ")
  (setq-local comment-end "")
  (setq-local comment-start-skip "\\(?://+\\|/\\*+\\)[ \t]*")
  (setq-local parse-sexp-ignore-comments t)
  (setq-local parse-sexp-lookup-properties t)
  (setq-local syntax-propertize-function #'kcf--syntax-propertize)
  (setq-local font-lock-defaults '(((kcf--next 0 kcf--face))))
  (add-hook 'font-lock-extend-region-functions #'kcf--extend-region nil t)
  (setq-local indent-line-function #'kcf-indent-line)
  (setq-local indent-tabs-mode nil)
  (setq-local electric-indent-chars (append "{})" electric-indent-chars))
  (setq-local imenu-create-index-function #'kcf--imenu-index)
  (when buffer-file-name
    (setq-local compile-command
                (concat (shell-quote-argument kcf-program) " check --color never "
                        (shell-quote-argument (file-name-nondirectory buffer-file-name))))))

;;;###autoload
(add-to-list 'auto-mode-alist '("\\.kcf\\'" . kcf-mode))

(provide 'kcf-mode)
;;; kcf-mode.el ends here
