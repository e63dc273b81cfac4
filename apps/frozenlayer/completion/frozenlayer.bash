# Bash completion of frozenlayer: subcommands, options, words to choose from, file names.
# Installed where bash-completion finds it; otherwise: source frozenlayer.bash

# Options of each subcommand. After "=" stands what follows the option: "@" a file name, words to choose from
# with "|" between them, or nothing for what cannot be guessed.
declare -gA _frozenlayer_options
_frozenlayer_options[import]="--help --values=@ --stage=flow|pack|cool|warp --temperature= --velocity= --displacement=
    --cooling-time= --density= --volume-shrinkage= --temperature-unit=K|degC --length-unit=m|mm|cm|in
    --velocity-unit=m/s|cm/s|mm/s --density-unit=kg/m3|g/cm3 --times=
    --part= --ignore= --region-array= --runner= --special= --wall= --material=@ --freeze-temperature= --pressure= --pressure-array=
    --pressure-unit=MPa|Pa|bar --allow-missing= --out=@ --force --list"
_frozenlayer_options[show]="${_frozenlayer_options[import]% --list} --keep=@ --resolved --corrected --classic"
_frozenlayer_options[run]="--help --analysis-code= --intermediate-times=auto --log-level= --threads= --fibre-probe
    --fiber-probe --resume --view=@ --export=@ --resolved --corrected --classic"
_frozenlayer_options[info]="--help --json"
_frozenlayer_options[view]="--help --out=@"
_frozenlayer_options[export]="--help --out=@ --to=pvd|vtu|hdf|csv --compress --force"
_frozenlayer_options[probe]="--help --node= --point= --nearest --out=@ --force"
_frozenlayer_options[compare]="--help --tolerance= --csv=@ --view=@"
_frozenlayer_options[demo]="--help --shape=cover|plate|ring --cells= --stage=cool|flow|pack|warp --shuffle --force"

# Completes from words with blanks between them.
_frozenlayer_offer() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

_frozenlayer_offer_files() {
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

_frozenlayer() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} entry
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        if [[ $word == -* ]]; then
            _frozenlayer_offer "--help --version" "$word"
        else
            _frozenlayer_offer "${!_frozenlayer_options[*]}" "$word"
        fi
        return
    fi
    local entries=(${_frozenlayer_options[${COMP_WORDS[1]:--}]})
    # The shell takes --option=word apart at "=".
    if [[ $word == "=" ]]; then
        word=""
    elif [[ $before == "=" ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for entry in "${entries[@]}"; do
        if [[ ${entry%%=*} == "$before" && $entry == *=* ]]; then
            case ${entry#*=} in
                "") ;;
                @) _frozenlayer_offer_files "$word" ;;
                *) IFS="|" _frozenlayer_offer "${entry#*=}" "$word" ;;
            esac
            return
        fi
    done
    if [[ $word == -* ]]; then
        _frozenlayer_offer "${entries[*]%%=*}" "$word"
    else
        _frozenlayer_offer_files "$word"
    fi
}

complete -o filenames -F _frozenlayer frozenlayer
